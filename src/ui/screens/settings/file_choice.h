#pragma once

#include "core/language.h"

#include <QString>

#include <functional>

class QWidget;

namespace brevlin {

/// Hands over the absolute path that the user chose; not called where he chose none, or the parent is gone.
using FileChosen = std::function<void(const QString&)>;

/// Lets the user choose where a file is to be written, in the desktop's own dialog where Qt knows it. Asks
/// before a file is replaced. Returns at once.
void chooseFileToWrite(QWidget& parent, AppLanguage language, const QString& name, FileChosen chosen);
/// Likewise a file to read.
void chooseFileToRead(QWidget& parent, AppLanguage language, FileChosen chosen);

} // namespace brevlin
