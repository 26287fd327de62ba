#include "core/calendar_texts.h"

#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

// Locales in whose short form 09:05 is 09:05. For the one text of a day's work that is a time, ICU would
// bring 2 MB of data and code into memory.
constexpr std::array<std::string_view, 20> plainTimeLocales{
    "root",  "zh",    "zh_CN", "de",    "de_DE", "de_AT", "en_GB", "fr",    "fr_FR", "it",
    "it_IT", "nl_NL", "pl_PL", "pt_BR", "pt_PT", "ru",    "ru_RU", "sv_SE", "tr_TR", "uk_UA"};

std::string plainTime(Instant instant)
{
    constexpr double minutesOfDay = 24 * 60;
    const double minutes = std::floor(unixTime(instant).count() / 60);
    const auto minute = static_cast<int>(minutes - std::floor(minutes / minutesOfDay) * minutesOfDay);
    const auto digit = [](int number) {
        return static_cast<char>('0' + number);
    };
    return {digit(minute / 600), digit(minute / 60 % 10), ':', digit(minute % 60 / 10), digit(minute % 10)};
}

} // namespace

CalendarTexts::CalendarTexts(std::string localeIdentifier)
    : m_localeIdentifier(std::move(localeIdentifier))
    , m_hasPlainTimes(std::ranges::find(plainTimeLocales, m_localeIdentifier) != plainTimeLocales.end())
{}

// ICU opens its data for it, which an idle timer's start need not wait for.
const icu::Locale& CalendarTexts::locale()
{
    if (!m_locale) {
        m_locale = icu::Locale::createCanonical(m_localeIdentifier.c_str());
    }
    return *m_locale;
}

std::string CalendarTexts::text(std::string_view skeleton, Instant instant)
{
    auto found = m_bySkeleton.find(skeleton);
    if (found == m_bySkeleton.end()) {
        UErrorCode status = U_ZERO_ERROR;
        if (!m_patterns) {
            m_patterns.reset(icu::DateTimePatternGenerator::createInstance(locale(), status));
        }
        std::unique_ptr<icu::DateFormat> made;
        if (m_patterns) {
            const icu::UnicodeString pattern =
                m_patterns->getBestPattern(icu::UnicodeString::fromUTF8(icu::StringPiece{
                                               skeleton.data(), static_cast<int32_t>(skeleton.size())}),
                                           status);
            made = std::make_unique<icu::SimpleDateFormat>(pattern, locale(), status);
            made->setTimeZone(*icu::TimeZone::getGMT());
        }
        found =
            m_bySkeleton.emplace(std::string{skeleton}, U_SUCCESS(status) ? std::move(made) : nullptr).first;
    }
    return format(found->second.get(), instant);
}

std::string CalendarTexts::shortTimeText(Instant instant)
{
    if (m_hasPlainTimes) {
        return plainTime(instant);
    }
    if (!m_shortTime) {
        m_shortTime.reset(icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale()));
        if (m_shortTime) {
            m_shortTime->setTimeZone(*icu::TimeZone::getGMT());
        }
    }
    return format(m_shortTime.get(), instant);
}

// An installation without ICU's locale data has no formatter: an empty text then says what is known.
std::string CalendarTexts::format(const icu::DateFormat* format, Instant instant) const
{
    std::string result;
    if (format != nullptr) {
        icu::UnicodeString text;
        format->format(unixTime(instant).count() * 1000.0, text).toUTF8String(result);
    }
    return result;
}

} // namespace brevlin
