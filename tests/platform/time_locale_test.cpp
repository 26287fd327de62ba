#include "core/calendar.h"
#include "platform/freedesktop/clock/time_locale.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <tuple>

namespace brevlin {
namespace {

TEST(TimeLocale, the_time_of_day_is_written_as_the_environment_says)
{
    const Calendar utc(std::make_shared<const TimeZoneRules>(), "en");
    const Instant afternoon = utc.date(LocalDay{std::chrono::year{2026} / 7 / 1}, 14);
    for (const auto& [all, time, lang, text] : {std::tuple{"", "", "C.UTF-8", "14:00"},
                                                {"", "", "", "14:00"},
                                                {"POSIX", "en_US.UTF-8", "en_US.UTF-8", "14:00"},
                                                {"", "de_DE.UTF-8", "en_US.UTF-8", "14:00"},
                                                {"", "", "en_US.UTF-8", "2:00\u202FPM"},
                                                {"", "zh_CN.UTF-8", "en_US.UTF-8", "14:00"},
                                                {"", "", "de_DE@euro", "14:00"}}) {
        qputenv("LC_ALL", all);
        qputenv("LC_TIME", time);
        qputenv("LANG", lang);
        const Calendar calendar(std::make_shared<const TimeZoneRules>(), timeLocale());
        EXPECT_EQ(calendar.shortTimeText(afternoon), text) << all << time << lang;
    }
}

} // namespace
} // namespace brevlin
