#include "core/time_zone_rules.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

using std::chrono::seconds;

// No zone has ever been further from UTC, the change of Apia and Manila over the date line included.
constexpr seconds largestOffset{26 * 3600};

} // namespace

TimeZoneRules::TimeZoneRules() : TimeZoneRules("UTC", {}) {}

TimeZoneRules::TimeZoneRules(std::string identifier, std::vector<Change> changes)
    : m_identifier(std::move(identifier)), m_changes(std::move(changes))
{
    if (m_changes.empty()) {
        m_changes.push_back({seconds::zero(), seconds::zero()});
    }
}

seconds TimeZoneRules::wholeUnixSeconds(Instant instant)
{
    constexpr double limit = 3.2e11;
    const double value = unixTime(instant).count();
    // Written so that an undefined number ends at the limit, too.
    const double kept = value > -limit ? std::min(value, limit) : -limit;
    const auto towardsZero = static_cast<std::int64_t>(kept);
    return seconds{towardsZero - (static_cast<double>(towardsZero) > kept ? 1 : 0)};
}

TimeZoneRules::Stretch TimeZoneRules::stretch(seconds unixSeconds) const
{
    const auto next =
        std::upper_bound(m_changes.begin(), m_changes.end(), unixSeconds,
                         [](seconds instant, const Change& change) { return instant < change.at; });
    const bool isFirst = next == m_changes.begin();
    return {isFirst ? seconds::min() : std::prev(next)->at,
            next == m_changes.end() ? seconds::max() : next->at,
            isFirst ? next->offset : std::prev(next)->offset};
}

seconds TimeZoneRules::offset(seconds unixSeconds) const
{
    return stretch(unixSeconds).offset;
}

seconds TimeZoneRules::firstAtOrAfter(seconds wallClock, const Stretch& near) const
{
    // So far behind the stretch's begin no clock before it has shown this time.
    const seconds candidate = wallClock - near.offset;
    return near.contains(candidate) && near.contains(candidate - 2 * largestOffset)
               ? candidate
               : firstAtOrAfter(wallClock);
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
