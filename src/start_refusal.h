#pragma once

#include "core/language.h"

#include <QtGlobal>

#include <string>

namespace brevlin {

/// Tells why the program does not start: in a window, until it is closed, and on stderr. In both languages,
/// because the user's choice is among what was not read yet. The system's words may be empty.
void showStartRefusal(const BilingualText& reason, const std::string& systemsWords);

/// For qInstallMessageHandler while the application object is made: Qt aborts the process there when it
/// cannot reach the display. This ends it with a sentence instead.
void refuseWithoutDisplay(QtMsgType type, const QMessageLogContext& context, const QString& message);

} // namespace brevlin
