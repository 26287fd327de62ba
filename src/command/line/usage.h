#pragma once

#include "core/language.h"

#include <string_view>

namespace brevlin {

/// What the program can be asked on the command line.
std::string_view usage(AppLanguage language);
/// Of the messages, as the environment says.
AppLanguage messageLanguage();

} // namespace brevlin
