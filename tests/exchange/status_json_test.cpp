#include "exchange/instant_text.h"
#include "exchange/status_json.h"
#include "platform/freedesktop/clock/system_time_zone.h"

#include <gtest/gtest.h>

#include <limits>

namespace brevlin {
namespace {

TimerStatus runningStatus()
{
    TimerStatus status;
    status.state = TimerRunState::running;
    status.remaining = Seconds{1453.2};
    status.endsAt = instantFromText("2026-03-29T03:10:05.0625+02:00");
    status.planned = Seconds{1500};
    status.intention = "R&D <b> \"1\"";
    status.cyclePosition = 2;
    status.cycleLength = 4;
    status.focusToday = Seconds{3000};
    status.completedToday = 2;
    return status;
}

TEST(StatusJson, has_the_keys_that_scripts_rely_on)
{
    const TimeZone zone = timeZoneOf("Europe/Berlin");
    EXPECT_EQ(
        *statusJson(runningStatus(), *zone),
        R"({"version":1,"phase":"focus","state":"running","remaining_seconds":1454,)"
        R"("ends_at":"2026-03-29T03:10:05.062+02:00","planned_seconds":1500,"intention":"R&D <b> \"1\"",)"
        R"("cycle":{"position":2,"length":4},"today":{"focus_seconds":3000,"completed":2}})");
    EXPECT_EQ(*statusJson({}, *zone),
              R"({"version":1,"phase":"focus","state":"idle","remaining_seconds":0,"ends_at":null,)"
              R"("planned_seconds":0,"intention":"","cycle":{"position":1,"length":1},)"
              R"("today":{"focus_seconds":0,"completed":0}})");
    TimerStatus endless = runningStatus();
    endless.endsAt = Instant{Seconds{std::numeric_limits<double>::infinity()}};
    EXPECT_TRUE(statusJson(endless, *zone));
    SessionRecord record;
    record.intention = "x";
    EXPECT_NE(statusJson({}, *zone, &record)->find(R"("record":{"id":)"), std::string::npos);
}

TEST(StatusJson, is_read_back_and_takes_another_remaining_time_even_where_a_text_looks_like_one)
{
    TimerStatus status = runningStatus();
    status.endsAt = instantFromText("2026-03-29T03:10:05.5+02:00");
    status.remaining = Seconds{1454};
    status.intention = R"("remaining_seconds":7)";
    const std::string json = *statusJson(status, *timeZoneOf("Asia/Kathmandu"));
    EXPECT_EQ(*statusFromJson(json), status);
    status.remaining = Seconds{9};
    EXPECT_EQ(*statusFromJson(withRemaining(json, Seconds{8.1})), status);
    for (const char* none : {"", "[]", R"({"version":1,"phase":"nap"})"}) {
        EXPECT_FALSE(statusFromJson(none)) << none;
    }
    EXPECT_FALSE(statusFromJson(absentStatusJson()));
}

} // namespace
} // namespace brevlin
