#pragma once

#include "core/raw_value.h"

#include <array>
#include <string_view>

namespace brevlin {

/// The language of every text that the program shows.
enum class AppLanguage { simplifiedChinese, english };

template <>
struct RawValues<AppLanguage>
{
    static constexpr std::array cases{
        RawValueCase<AppLanguage>{AppLanguage::simplifiedChinese, "zh-Hans"},
        RawValueCase<AppLanguage>{AppLanguage::english, "english"},
    };
};

/// The ICU and Qt locale for dates in this language.
constexpr std::string_view localeIdentifier(AppLanguage language)
{
    return language == AppLanguage::english ? "en" : "zh-Hans";
}

/// The two forms of one text, UTF-8. Kept beside the code that shows it.
struct BilingualText
{
    std::string_view simplifiedChinese;
    std::string_view english;

    constexpr std::string_view in(AppLanguage language) const
    {
        return language == AppLanguage::english ? english : simplifiedChinese;
    }
};

} // namespace brevlin
