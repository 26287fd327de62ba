#include "core/calendar.h"
#include "platform/freedesktop/clock/system_time_zone.h"

#include <gtest/gtest.h>
#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace brevlin {
namespace {

using namespace std::chrono;

LocalDay day(int y, unsigned m, unsigned d)
{
    return LocalDay{year{y} / month{m} / d};
}

// An instant by its UTC date and time.
Instant utc(int y, unsigned m, unsigned d, int hour = 0, int minute = 0, int second = 0)
{
    const auto since = sys_days{year{y} / month{m} / d}.time_since_epoch() + hours{hour} + minutes{minute};
    return instantFromUnixTime(Seconds{since + seconds{second}});
}

// Expected values were worked out with Python's zoneinfo.
TEST(Calendar, a_day_begins_at_the_first_instant_of_its_date)
{
    struct Case
    {
        const char* zone;
        LocalDay date;
        Instant start;
    };
    const Case cases[] = {
        {"UTC", day(2026, 11, 24), utc(2026, 11, 24)},
        {"Asia/Shanghai", day(2026, 11, 24), utc(2026, 11, 23, 16)},
        {"Europe/Berlin", day(2026, 3, 29), utc(2026, 3, 28, 23)},
        // The clock skips midnight: the day starts at 01:00.
        {"America/Santiago", day(2024, 9, 8), utc(2024, 9, 8, 4)},
        // The clock goes back at 01:00 to 00:00: two midnights, the first counts.
        {"America/Havana", day(2024, 11, 3), utc(2024, 11, 3, 4)},
        // Half an hour.
        {"Australia/Lord_Howe", day(2024, 4, 7), utc(2024, 4, 6, 13)},
        {"Australia/Lord_Howe", day(2024, 4, 8), utc(2024, 4, 7, 13, 30)},
        // The date that never was begins where the next one does.
        {"Pacific/Apia", day(2011, 12, 30), utc(2011, 12, 30, 10)},
        {"Pacific/Apia", day(2011, 12, 31), utc(2011, 12, 30, 10)},
    };
    for (const Case& c : cases) {
        const Calendar calendar(timeZoneOf(c.zone), "en");
        EXPECT_EQ(calendar.start(c.date), c.start) << c.zone;
        EXPECT_LT(calendar.localDay(c.start - Seconds{0.001}), c.date) << c.zone;
    }
}

TEST(Calendar, a_date_that_never_was_is_stepped_over)
{
    const Calendar apia(timeZoneOf("Pacific/Apia"), "en");
    EXPECT_FALSE(apia.exists(day(2011, 12, 30)));
    EXPECT_TRUE(apia.exists(day(2011, 12, 29)));
    EXPECT_EQ(apia.dayBefore(day(2011, 12, 31)), day(2011, 12, 29));
    const DateInterval last = apia.interval(CalendarUnit::day, apia.start(day(2011, 12, 29)));
    EXPECT_EQ(last.end - last.start, hours{24});
    EXPECT_EQ(Calendar(timeZoneOf("America/Havana"), "en").dayBefore(day(2024, 11, 3)), day(2024, 11, 2));
}

TEST(Calendar, intervals_follow_the_zone_and_the_weeks_asked_for)
{
    const Calendar berlin = Calendar(timeZoneOf("Europe/Berlin"), "en").withWeeks(Monday, 4);
    EXPECT_EQ(berlin.minimalDaysInFirstWeek(), 4);
    const Instant sunday = utc(2026, 3, 29, 12);
    const auto interval = [&](CalendarUnit unit) {
        return berlin.interval(unit, sunday);
    };
    EXPECT_EQ(interval(CalendarUnit::day), (DateInterval{utc(2026, 3, 28, 23), utc(2026, 3, 29, 22)}));
    EXPECT_EQ(interval(CalendarUnit::weekOfYear), (DateInterval{utc(2026, 3, 22, 23), utc(2026, 3, 29, 22)}));
    EXPECT_EQ(interval(CalendarUnit::month), (DateInterval{utc(2026, 2, 28, 23), utc(2026, 3, 31, 22)}));
    EXPECT_EQ(interval(CalendarUnit::year), (DateInterval{utc(2025, 12, 31, 23), utc(2026, 12, 31, 23)}));
    EXPECT_EQ(Calendar(timeZoneOf("Europe/Berlin"), "en_US").interval(CalendarUnit::weekOfYear, sunday).start,
              utc(2026, 3, 28, 23));
    EXPECT_EQ(Calendar(timeZoneOf("UTC"), "de_DE").firstWeekday(), Monday);
    EXPECT_EQ(Calendar(timeZoneOf("UTC"), "de_DE").minimalDaysInFirstWeek(), 4);
}

TEST(Calendar, adding_keeps_the_time_on_the_wall)
{
    const Calendar berlin(timeZoneOf("Europe/Berlin"), "en");
    struct Case
    {
        CalendarUnit unit;
        std::int64_t count;
        Instant from;
        Instant to;
    };
    const Case cases[] = {
        {CalendarUnit::day, 1, utc(2026, 3, 28, 11), utc(2026, 3, 29, 10)},
        {CalendarUnit::day, -1, utc(2026, 3, 29, 10), utc(2026, 3, 28, 11)},
        // 02:30 does not exist on that day, and exists twice on the other.
        {CalendarUnit::day, 1, utc(2026, 3, 28, 1, 30), utc(2026, 3, 29, 1, 30)},
        {CalendarUnit::day, 1, utc(2026, 10, 24, 0, 30), utc(2026, 10, 25, 0, 30)},
        {CalendarUnit::weekOfYear, -2, utc(2026, 4, 6, 10), utc(2026, 3, 23, 11)},
        {CalendarUnit::month, 1, utc(2026, 1, 31, 11), utc(2026, 2, 28, 11)},
        {CalendarUnit::month, -14, utc(2026, 1, 15, 11), utc(2024, 11, 15, 11)},
        {CalendarUnit::year, 1, utc(2024, 2, 29, 11), utc(2025, 2, 28, 11)},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(berlin.adding(c.unit, c.count, c.from), c.to) << c.count;
    }
    EXPECT_EQ(berlin.adding(CalendarUnit::day, 3, utc(2026, 1, 1) + Seconds{0.25}),
              utc(2026, 1, 4) + Seconds{0.25});
    EXPECT_EQ(berlin.dayDifference(utc(2026, 3, 1, 12), utc(2026, 3, 31, 21, 59)), 30);
    EXPECT_EQ(berlin.dayDifference(utc(2026, 3, 31, 22), utc(2026, 3, 1)), -31);
}

TEST(Calendar, hours_are_those_on_the_wall)
{
    const Calendar lordHowe(timeZoneOf("Australia/Lord_Howe"), "en");
    EXPECT_EQ(lordHowe.hour(utc(2024, 4, 6, 14, 45)), 1);
    EXPECT_EQ(lordHowe.hour(utc(2024, 4, 6, 15, 15)), 1); // half an hour back
    const Calendar berlin(timeZoneOf("Europe/Berlin"), "en");
    EXPECT_EQ(berlin.date(day(2026, 7, 1), 9), utc(2026, 7, 1, 7));
    EXPECT_EQ(berlin.date(day(2026, 3, 29), 2), utc(2026, 3, 29, 1));
    EXPECT_EQ(berlin.date(day(2026, 3, 29), 3), utc(2026, 3, 29, 1));
    EXPECT_EQ(berlin.date(day(2026, 10, 25), 3), utc(2026, 10, 25, 2));
}

TEST(Calendar, no_instant_and_no_zone_name_breaks_it)
{
    EXPECT_EQ(Calendar(std::make_shared<const TimeZoneRules>(), "xx").localDay(Instant{}), day(2001, 1, 1));
    const Calendar calendar(timeZoneOf("Europe/Berlin"), "en");
    for (const double odd : {1e300, -1e300, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
        const Instant instant{Seconds{odd}};
        calendar.interval(CalendarUnit::year, instant);
        calendar.adding(CalendarUnit::month, std::numeric_limits<std::int64_t>::max(), instant);
        const int hour = calendar.hour(instant);
        EXPECT_TRUE(hour >= 0 && hour < 24) << odd;
    }
    EXPECT_EQ(calendar.startOfDay(utc(2150, 7, 1, 12)), utc(2150, 6, 30, 23)); // beyond the table
    EXPECT_EQ(calendar.startOfDay(utc(1961, 7, 1, 12)), utc(1961, 6, 30, 23)); // before it
}

TEST(Calendar, texts_order_their_parts_by_locale)
{
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("America/Lima")); // no matter
    const Instant instant = utc(2026, 11, 24, 6, 5);
    for (const auto& [locale, skeleton, text] : {std::tuple{"en", "yMMMMd", "November 24, 2026"},
                                                 {"zh-Hans", "yMMMMd", "2026年11月24日"},
                                                 {"en", "MMMEd", "Tue, Nov 24"},
                                                 {"zh-Hans", "MMMEd", "11月24日周二"},
                                                 {"en", "Hm", "14:05"}}) {
        EXPECT_EQ(Calendar(timeZoneOf("Asia/Shanghai"), locale).text(skeleton, instant), text);
    }
    EXPECT_EQ(Calendar(timeZoneOf("Asia/Shanghai"), "de_DE").shortTimeText(instant), "14:05");
    EXPECT_EQ(Calendar(timeZoneOf("Asia/Shanghai"), "en_US").shortTimeText(instant), "2:05\u202FPM");
}

TEST(Calendar, times_are_those_of_the_locale_also_where_they_are_written_without_its_data)
{
    int32_t count = 0;
    const icu::Locale* locales = icu::Locale::getAvailableLocales(count);
    std::vector<std::string> names{"root"};
    std::transform(locales, locales + count, std::back_inserter(names),
                   [](const icu::Locale& locale) { return locale.getName(); });
    for (const std::string& name : names) {
        if (name.size() > 5) {
            continue; // none of those is written so
        }
        const std::unique_ptr<icu::DateFormat> format{
            icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, icu::Locale(name.c_str()))};
        format->setTimeZone(*icu::TimeZone::getGMT());
        const Calendar calendar(timeZoneOf("UTC"), name);
        for (const Instant instant : {utc(2026, 11, 24, 0, 0), utc(2026, 11, 24, 23, 59) + Seconds{59.9},
                                      utc(1969, 3, 1, 9, 5) + Seconds{30.5}}) {
            icu::UnicodeString text;
            std::string expected;
            format->format(unixTime(instant).count() * 1000.0, text).toUTF8String(expected);
            EXPECT_EQ(calendar.shortTimeText(instant), expected) << name;
        }
    }
}

} // namespace
} // namespace brevlin
