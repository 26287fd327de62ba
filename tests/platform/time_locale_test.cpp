#include "core/calendar.h"
#include "platform/freedesktop/clock/time_locale.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace brevlin {
namespace {

TEST(TimeLocale, the_time_of_day_is_written_as_the_environment_says)
{
    const Calendar utc(std::make_shared<const TimeZoneRules>(), "en");
    const Instant afternoon = utc.date(LocalDay{std::chrono::year{2026} / 7 / 1}, 14);
    struct Case
    {
        const char* all;
        const char* time;
        const char* lang;
        const char* text;
    };
    for (const Case& c : {Case{"", "", "C.UTF-8", "14:00"},
                          {"", "", "", "14:00"},
                          {"POSIX", "en_US.UTF-8", "en_US.UTF-8", "14:00"},
                          {"", "de_DE.UTF-8", "en_US.UTF-8", "14:00"},
                          {"", "", "en_US.UTF-8", "2:00\u202FPM"},
                          {"", "zh_CN.UTF-8", "en_US.UTF-8", "14:00"},
                          {"", "", "de_DE@euro", "14:00"}}) {
        qputenv("LC_ALL", c.all);
        qputenv("LC_TIME", c.time);
        qputenv("LANG", c.lang);
        const Calendar calendar(std::make_shared<const TimeZoneRules>(), timeLocale());
        EXPECT_EQ(calendar.shortTimeText(afternoon), c.text) << c.all << c.time << c.lang;
    }
}

} // namespace
} // namespace brevlin
