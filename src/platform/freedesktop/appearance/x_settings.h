#pragma once

#include <map>
#include <string>
#include <string_view>

namespace brevlin {

/// What the desktop's settings daemon tells X11 programs
/// (https://specifications.freedesktop.org/xsettings-spec/xsettings-latest.html).
struct XSettings
{
    std::map<std::string, std::string> texts;
    std::map<std::string, int> numbers;
};

/// Reads the property _XSETTINGS_SETTINGS; as much as makes sense.
XSettings readXSettings(std::string_view bytes);

} // namespace brevlin
