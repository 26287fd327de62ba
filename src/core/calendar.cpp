#include "core/calendar.h"

#include "core/calendar_texts.h"
#include "core/time_zone_rules.h"

#include <unicode/calendar.h>
#include <unicode/locid.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

using namespace std::chrono;

Instant fromUnixSeconds(std::chrono::seconds sinceEpoch)
{
    return instantFromUnixTime(Seconds{sinceEpoch});
}

year_month_day clampedToMonth(year_month_day date)
{
    return date.ok() ? date : year_month_day{date.year() / date.month() / last};
}

} // namespace

Calendar::Calendar(TimeZone zone, const std::string& localeIdentifier)
    : m_zone(std::move(zone))
    , m_stretch(m_zone->stretch(std::chrono::seconds::zero()))
    , m_texts(std::make_shared<CalendarTexts>(localeIdentifier))
{}

const Calendar::Weeks& Calendar::weekRules() const
{
    if (!m_weeks) {
        m_weeks = Weeks{};
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<icu::Calendar> conventions{
            icu::Calendar::createInstance(icu::Locale{m_texts->localeIdentifier().c_str()}, status)};
        if (U_SUCCESS(status)) {
            m_weeks = {weekday{static_cast<unsigned>(conventions->getFirstDayOfWeek(status)) - 1},
                       conventions->getMinimalDaysInFirstWeek()};
        }
    }
    return *m_weeks;
}

Calendar Calendar::withWeeks(weekday firstWeekday, int minimalDays) const
{
    Calendar result = *this;
    result.m_weeks = {firstWeekday, minimalDays};
    return result;
}

// The two time lines differ in their start only.
local_seconds Calendar::wallClock(Instant instant) const
{
    const std::chrono::seconds unixSeconds = TimeZoneRules::wholeUnixSeconds(instant);
    if (!m_stretch.contains(unixSeconds)) {
        m_stretch = m_zone->stretch(unixSeconds);
    }
    return local_seconds{unixSeconds + m_stretch.offset};
}

LocalDay Calendar::localDay(Instant instant) const
{
    return floor<days>(wallClock(instant));
}

int Calendar::hour(Instant instant) const
{
    const local_seconds time = wallClock(instant);
    return static_cast<int>(floor<hours>(time - floor<days>(time)).count());
}

Instant Calendar::start(LocalDay day) const
{
    const std::chrono::seconds first =
        m_zone->firstAtOrAfter(local_seconds{day}.time_since_epoch(), m_stretch);
    if (!m_stretch.contains(first)) {
        m_stretch = m_zone->stretch(first);
    }
    return fromUnixSeconds(first);
}

LocalDay Calendar::dayBefore(LocalDay day) const
{
    return localDay(start(day) - Seconds{1.0});
}

bool Calendar::exists(LocalDay day) const
{
    return localDay(start(day)) == day;
}

DateInterval Calendar::interval(CalendarUnit unit, Instant instant) const
{
    const LocalDay day = localDay(instant);
    const year_month_day date{day};
    switch (unit) {
    case CalendarUnit::day:
        break;
    case CalendarUnit::weekOfYear: {
        const LocalDay first = day - (weekday{day} - firstWeekday());
        return {start(first), start(first + days{7})};
    }
    case CalendarUnit::month: {
        const LocalDay first{date.year() / date.month() / 1};
        return {start(first), start(LocalDay{(date.year() / date.month() + months{1}) / 1})};
    }
    case CalendarUnit::year:
        return {start(LocalDay{date.year() / January / 1}),
                start(LocalDay{(date.year() + years{1}) / January / 1})};
    }
    // The date after, unless it never was. Behind the last one that can be told there is none.
    constexpr days mostLeftOut{3};
    LocalDay next = day + days{1};
    while (!exists(next) && next - day < mostLeftOut) {
        next += days{1};
    }
    return {start(day), start(next)};
}

Instant Calendar::adding(CalendarUnit unit, std::int64_t count, Instant instant) const
{
    // More would leave the range that the standard library's dates can tell.
    constexpr std::int64_t limit = std::int64_t{10'000} * 366;
    const auto amount = static_cast<int>(std::clamp(count, -limit, limit));
    const local_seconds time = wallClock(instant);
    const LocalDay day = floor<days>(time);
    const auto timeOfDay = time - day;
    const year_month_day date{day};
    LocalDay target = day;
    switch (unit) {
    case CalendarUnit::day:
        target = day + days{amount};
        break;
    case CalendarUnit::weekOfYear:
        target = day + weeks{amount};
        break;
    case CalendarUnit::month:
        target = LocalDay{clampedToMonth(date + months{amount})};
        break;
    case CalendarUnit::year:
        target = LocalDay{clampedToMonth(date + years{std::clamp(amount, -10'000, 10'000)})};
        break;
    }
    const double sinceEpoch = unixTime(instant).count();
    const double fraction = sinceEpoch - std::floor(sinceEpoch);
    return resolve(target + timeOfDay, Seconds{fraction > 0.0 ? fraction : 0.0});
}

std::int64_t Calendar::dayDifference(Instant from, Instant to) const
{
    return (localDay(to) - localDay(from)).count();
}

Instant Calendar::date(LocalDay day, int hour) const
{
    return resolve(day + hours{hour}, Seconds::zero());
}

Seconds Calendar::offset(Instant instant) const
{
    return wallClock(instant).time_since_epoch() - TimeZoneRules::wholeUnixSeconds(instant);
}

std::string Calendar::text(std::string_view skeleton, Instant instant) const
{
    return m_texts->text(skeleton, instant + offset(instant));
}

std::string Calendar::shortTimeText(Instant instant) const
{
    return m_texts->shortTimeText(instant + offset(instant));
}

Instant Calendar::resolve(local_seconds time, Seconds fraction) const
{
    return fromUnixSeconds(m_zone->resolve(time.time_since_epoch())) + fraction;
}

} // namespace brevlin
