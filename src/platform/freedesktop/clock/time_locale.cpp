#include "platform/freedesktop/clock/time_locale.h"

#include <QByteArray>

namespace brevlin {

std::string timeLocale()
{
    constexpr const char* hours24 = "root"; // of Unicode's locale data, which belongs to no place
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const QByteArray value = qgetenv(variable);
        if (!value.isEmpty()) {
            // language_TERRITORY.charset@modifier
            const std::string name = value.toStdString().substr(0, value.toStdString().find_first_of(".@"));
            return name == "C" || name == "POSIX" ? hours24 : name;
        }
    }
    return hours24;
}

} // namespace brevlin
