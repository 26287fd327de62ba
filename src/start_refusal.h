#pragma once

#include "core/language.h"

#include <string>

namespace brevlin {

/// Tells why the program does not start: in a window, until it is closed, and on stderr. In both languages,
/// because the user's choice is among what was not read yet. The system's words may be empty.
void showStartRefusal(const BilingualText& reason, const std::string& systemsWords);

} // namespace brevlin
