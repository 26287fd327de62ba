#pragma once

#include "core/instant.h"
#include "core/time_zone_rules.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

class CalendarTexts;

/// A stretch of time: start inclusive, end exclusive.
struct DateInterval
{
    Instant start;
    Instant end;

    bool contains(Instant instant) const { return start <= instant && instant < end; }
    bool operator==(const DateInterval&) const = default;
};

enum class CalendarUnit { day, weekOfYear, month, year };

/// A date of the Gregorian calendar without a time or a zone.
using LocalDay = std::chrono::local_days;

/// The Gregorian calendar in one time zone with one locale's conventions, a cheap value. Texts come from ICU,
/// date arithmetic from the standard library. An instant belongs to the local date that a clock on the wall
/// shows at it. Instants beyond about ten thousand years from 2001 count as that far away. For one thread.
class Calendar final
{
public:
    /// The locale is an ICU identifier (https://unicode-org.github.io/icu/userguide/locale/). The first
    /// weekday and the minimal days of a year's first week are the locale's.
    Calendar(TimeZone zone, const std::string& localeIdentifier);

    /// The same calendar with other weeks; minimalDays is 1 to 7.
    [[nodiscard]] Calendar withWeeks(std::chrono::weekday firstWeekday, int minimalDays) const;

    LocalDay localDay(Instant instant) const;
    /// The hour on the wall clock, 0 to 23.
    int hour(Instant instant) const;

    /// The first instant of the date: not 00:00 where the clock skips it, the first of two midnights where
    /// the clock goes back. A date that never was begins where the next one does.
    Instant start(LocalDay day) const;
    Instant startOfDay(Instant instant) const { return start(localDay(instant)); }
    /// The date before, stepping over dates that never were.
    LocalDay dayBefore(LocalDay day) const;
    /// Whether the zone ever showed the date.
    bool exists(LocalDay day) const;

    DateInterval interval(CalendarUnit unit, Instant instant) const;
    /// The same wall-clock time, count units away; a day that the month lacks becomes its last. A time that
    /// the clock skips moves on by what is skipped; of two equal times it is the first.
    Instant adding(CalendarUnit unit, std::int64_t count, Instant instant) const;
    /// Dates between the two instants' dates, negative when the second is earlier.
    std::int64_t dayDifference(Instant from, Instant to) const;
    /// The instant at which the wall clock shows the hour (0 to 23) of the date, with the rules of adding().
    Instant date(LocalDay day, int hour) const;

    std::chrono::weekday firstWeekday() const { return weekRules().first; }
    int minimalDaysInFirstWeek() const { return weekRules().minimalDays; }
    const TimeZone& timeZone() const { return m_zone; }

    /// The instant in the form that the locale gives to the skeleton, for example "yMMMMd"
    /// (https://unicode.org/reports/tr35/tr35-dates.html#availableFormats_appendItems).
    std::string text(std::string_view skeleton, Instant instant) const;
    /// The time of day in the locale's short form.
    std::string shortTimeText(Instant instant) const;

private:
    struct Weeks
    {
        std::chrono::weekday first;
        int minimalDays = 1;
    };
    const Weeks& weekRules() const;
    std::chrono::local_seconds wallClock(Instant instant) const;
    Seconds offset(Instant instant) const;
    Instant resolve(std::chrono::local_seconds time, Seconds fraction) const;

    TimeZone m_zone;
    mutable TimeZoneRules::Stretch m_stretch; // where the latest answer was found: the next one is near it
    std::shared_ptr<CalendarTexts> m_texts;   // a cache of formatters
    mutable std::optional<Weeks> m_weeks;     // the locale's are read when they are first asked for
};

} // namespace brevlin
