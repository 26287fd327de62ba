#include "command/line/usage.h"

#include <cstdlib>

namespace brevlin {

AppLanguage messageLanguage()
{
    // The first that is set and not empty,
    // https://pubs.opengroup.org/onlinepubs/9699919799/basedefs/V1_chap08.html
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            return std::string_view{value}.starts_with("zh") ? AppLanguage::simplifiedChinese
                                                             : AppLanguage::english;
        }
    }
    return AppLanguage::english;
}

} // namespace brevlin
