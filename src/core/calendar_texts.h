#pragma once

#include "core/instant.h"

#include <unicode/datefmt.h>
#include <unicode/dtptngen.h>
#include <unicode/locid.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// Dates as texts of one locale. The instants are those of a clock that shows UTC: the zone is the caller's
/// affair, so that texts and arithmetic cannot differ. Making a formatter takes ICU longer than a redraw may
/// last, so each is made once. For one thread.
class CalendarTexts final
{
public:
    explicit CalendarTexts(std::string localeIdentifier);

    const std::string& localeIdentifier() const { return m_localeIdentifier; }

    std::string text(std::string_view skeleton, Instant instant);
    std::string shortTimeText(Instant instant);

private:
    const icu::Locale& locale();
    std::string format(const icu::DateFormat* format, Instant instant) const;

    std::string m_localeIdentifier;
    std::optional<icu::Locale> m_locale;
    std::unique_ptr<icu::DateTimePatternGenerator> m_patterns;
    std::map<std::string, std::unique_ptr<icu::DateFormat>, std::less<>> m_bySkeleton;
    std::unique_ptr<icu::DateFormat> m_shortTime;
    bool m_hasPlainTimes;
};

} // namespace brevlin
