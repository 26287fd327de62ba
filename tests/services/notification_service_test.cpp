#include "services/notification_service.h"
#include "support/fake_desktop.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

const Instant now{Seconds{8e8}};
const Uuid session = *Uuid::fromText("0F8FAD5B-D9CB-469F-A165-70867728950E");

TimerSnapshot running(double remaining, TimerPhase phase = TimerPhase::focus)
{
    TimerSnapshot snapshot;
    snapshot.phase = phase;
    snapshot.runState = TimerRunState::running;
    snapshot.sessionID = session;
    snapshot.expectedEndAt = now + Seconds{remaining};
    return snapshot;
}

class NotificationServiceTest : public ::testing::Test
{
protected:
    std::string schedule(const TimerSnapshot& snapshot, AlertIntensity intensity = AlertIntensity::standard)
    {
        std::string error;
        service.schedule(snapshot, intensity, now, [&](const Expected<void, std::string>& result) {
            error = result ? "" : result.error();
        });
        return error;
    }

    test::FakeNotificationCenter center;
    NotificationService service{center};
};

TEST_F(NotificationServiceTest, schedules_the_whole_request)
{
    EXPECT_EQ(center.categories.at(0).identifier, "brevlin.timer.finished");
    EXPECT_EQ(center.categories[0].actions[0].title, "开始下一阶段");
    service.setLanguage(AppLanguage::english);
    EXPECT_EQ(center.categories[0].actions[1].title, "Stop alert");
    EXPECT_EQ(schedule(running(0.4), AlertIntensity::strong), "");
    ASSERT_EQ(center.pending.size(), 1U);
    NotificationRequest expected;
    expected.identifier = "brevlin.timer.0F8FAD5B-D9CB-469F-A165-70867728950E";
    expected.title = "Focus complete";
    expected.body = "Focus is complete. Ready for the next phase.";
    expected.categoryIdentifier = "brevlin.timer.finished";
    expected.threadIdentifier = "brevlin.timer";
    expected.userInfo = {{"sessionID", session.text()}, {"phase", "focus"}};
    expected.timeSensitive = true;
    expected.requestedAt = now;
    expected.delay = Seconds{1.0};
    EXPECT_EQ(center.pending.front(), expected);
}

TEST_F(NotificationServiceTest, texts_follow_phase_intention_and_language)
{
    schedule(running(60, TimerPhase::shortBreak));
    EXPECT_EQ(center.pending.back().title, "休息时间到");
    EXPECT_EQ(center.pending.back().body, "休息已结束，准备进入下一阶段。");
    EXPECT_FALSE(center.pending.back().timeSensitive);
    TimerSnapshot intended = running(60);
    intended.intention = "  Write report\n";
    schedule(intended);
    EXPECT_EQ(center.pending.back().body, "“Write report”已完成，准备进入下一阶段。");
    service.setLanguage(AppLanguage::english);
    schedule(intended);
    EXPECT_EQ(center.pending.back().body, "“Write report” is complete. Ready for the next phase.");
    intended.intention = "   ";
    schedule(intended);
    EXPECT_EQ(center.pending.back().body, "Focus is complete. Ready for the next phase.");
    EXPECT_EQ(center.pending.size(), 1U) << "a run has one pending request";
}

TEST_F(NotificationServiceTest, says_what_stands_in_the_way_and_touches_nothing)
{
    schedule(running(60));
    TimerSnapshot nameless = running(60);
    nameless.sessionID.reset();
    TimerSnapshot endless = running(60);
    endless.expectedEndAt.reset();
    EXPECT_EQ(schedule(nameless), "无法安排提醒：计时会话缺少标识。");
    EXPECT_EQ(schedule(endless), "无法安排提醒：计时会话缺少结束时间。");
    service.setLanguage(AppLanguage::english);
    EXPECT_EQ(schedule(running(0)), "Unable to schedule notification: timer already ended.");
    EXPECT_EQ(center.pending.size(), 1U);
    center.failure = "the server is gone";
    EXPECT_EQ(schedule(running(60)), "the server is gone");
}

TEST_F(NotificationServiceTest, cancelling_withdraws_both_forms_of_the_identifier)
{
    schedule(running(60));
    service.cancel(std::nullopt);
    EXPECT_EQ(center.pending.size(), 1U);
    service.cancel(session);
    EXPECT_TRUE(center.pending.empty());
    EXPECT_EQ(center.removedDelivered, (std::vector<std::string>{"brevlin.timer." + session.text(),
                                                                 "kestrove.timer." + session.text()}));
}

} // namespace
} // namespace brevlin
