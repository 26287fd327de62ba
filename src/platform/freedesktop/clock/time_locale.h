#pragma once

#include <string>

namespace brevlin {

/// The locale in which the user's desktop writes the time of day: of LC_ALL, LC_TIME and LANG the first that
/// is set (https://pubs.opengroup.org/onlinepubs/9699919799/basedefs/V1_chap08.html#tag_08_02), as an ICU
/// identifier. The C locale, and none, count 24 hours.
std::string timeLocale();

} // namespace brevlin
