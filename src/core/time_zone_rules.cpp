#include "core/time_zone_rules.h"

#include <unicode/basictz.h>
#include <unicode/timezone.h>
#include <unicode/tztrans.h>

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

using std::chrono::seconds;

// 1970-01-01 and 2101-01-01, in Unix time.
constexpr seconds tableBegin{0};
constexpr seconds tableEnd{4'133'980'800};
// No zone has ever been further from UTC, the change of Apia and Manila over the date line included.
constexpr seconds largestOffset{26 * 3600};

double icuMilliseconds(seconds unixSeconds)
{
    return static_cast<double>(unixSeconds.count()) * 1000.0;
}

} // namespace

TimeZoneRules::TimeZoneRules(const std::string& identifier)
    : m_zone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(identifier)))
{
    if (*m_zone == icu::TimeZone::getUnknown()) {
        m_zone.reset(icu::TimeZone::createTimeZone("UTC"));
    }
    icu::UnicodeString name;
    m_zone->getID(name).toUTF8String(m_identifier);
    readChanges();
}

TimeZoneRules::~TimeZoneRules() = default;

void TimeZoneRules::readChanges()
{
    m_changes.push_back({tableBegin, offsetByIcu(tableBegin)});
    const auto* rules = dynamic_cast<const icu::BasicTimeZone*>(m_zone.get());
    if (rules == nullptr) {
        return;
    }
    icu::TimeZoneTransition transition;
    double from = icuMilliseconds(tableBegin);
    while (rules->getNextTransition(from, false, transition) != 0) {
        from = transition.getTime();
        const seconds at{static_cast<std::int64_t>(std::floor(from / 1000.0))};
        if (at >= tableEnd) {
            break;
        }
        const icu::TimeZoneRule* after = transition.getTo();
        const seconds offset{(after->getRawOffset() + after->getDSTSavings()) / 1000};
        // A change of the rules that leaves the clock alone is none for us.
        if (offset != m_changes.back().offset) {
            m_changes.push_back({at, offset});
        }
    }
}

seconds TimeZoneRules::wholeUnixSeconds(Instant instant)
{
    constexpr double limit = 3.2e11;
    const double value = std::floor(unixTime(instant).count());
    // Written so that an undefined number ends at the limit, too.
    return seconds{static_cast<std::int64_t>(value > -limit ? std::min(value, limit) : -limit)};
}

seconds TimeZoneRules::offset(Instant instant) const
{
    return offset(wholeUnixSeconds(instant));
}

seconds TimeZoneRules::offset(seconds unixSeconds) const
{
    if (unixSeconds < tableBegin || unixSeconds >= tableEnd) {
        return offsetByIcu(unixSeconds);
    }
    const auto next =
        std::upper_bound(m_changes.begin(), m_changes.end(), unixSeconds,
                         [](seconds instant, const Change& change) { return instant < change.at; });
    return std::prev(next)->offset;
}

seconds TimeZoneRules::offsetByIcu(seconds unixSeconds) const
{
    int32_t raw = 0;
    int32_t savings = 0;
    UErrorCode status = U_ZERO_ERROR;
    m_zone->getOffset(icuMilliseconds(unixSeconds), 0, raw, savings, status);
    return seconds{(raw + savings) / 1000};
}

seconds TimeZoneRules::firstAtOrAfter(seconds wallClock) const
{
    // Between the two ends the clock starts below the wanted time and is past it at the end. Changes in
    // between are few: within each stretch of constant offset the answer is a subtraction.
    const seconds begin = wallClock - largestOffset;
    const seconds end = wallClock + largestOffset;
    auto next = std::upper_bound(m_changes.begin(), m_changes.end(), begin,
                                 [](seconds instant, const Change& change) { return instant < change.at; });
    seconds stretchBegin = begin;
    seconds stretchOffset = offset(begin);
    for (;;) {
        const seconds stretchEnd = next != m_changes.end() && next->at < end ? next->at : end;
        const seconds candidate = std::max(stretchBegin, wallClock - stretchOffset);
        if (candidate < stretchEnd || stretchEnd == end) {
            return candidate;
        }
        stretchBegin = stretchEnd;
        stretchOffset = next->offset;
        ++next;
    }
}

seconds TimeZoneRules::resolve(seconds wallClock) const
{
    const seconds first = firstAtOrAfter(wallClock);
    if (first + offset(first) == wallClock) {
        return first;
    }
    // The clock jumps over the time at `first`.
    return wallClock - offset(first - seconds{1});
}

} // namespace brevlin
