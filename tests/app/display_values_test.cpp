#include "app/model_fixture.h"
#include "core/time_text.h"

#include <cmath>
#include <tuple>

namespace brevlin {
namespace {

TEST(TimeText, clocks_round_up_and_know_no_hours)
{
    for (const auto& [seconds, text] : {std::pair{0.0, "00:00"},
                                        {-5.0, "00:00"},
                                        {0.2, "00:01"},
                                        {59.5, "01:00"},
                                        {61.3, "01:02"},
                                        {599.01, "10:00"},
                                        {1500.0, "25:00"},
                                        {3600.0, "60:00"},
                                        {10800.0, "180:00"},
                                        {std::nan(""), "00:00"}}) {
        EXPECT_EQ(TimeText::clock(Seconds{seconds}), text);
    }
    EXPECT_FALSE(TimeText::clock(Seconds{HUGE_VAL}).empty());
}

TEST(TimeText, durations_are_whole_minutes_and_hours)
{
    for (const auto& [seconds, english, chinese] : {std::tuple{59.0, "0 min", "0 分钟"},
                                                    {119.9, "1 min", "1 分钟"},
                                                    {1500.0, "25 min", "25 分钟"},
                                                    {3600.0, "1 hr", "1 小时"},
                                                    {4500.0, "1 hr 15 min", "1 小时 15 分钟"},
                                                    {7200.0, "2 hr", "2 小时"}}) {
        EXPECT_EQ(TimeText::duration(Seconds{seconds}, AppLanguage::english), english);
        EXPECT_EQ(TimeText::duration(Seconds{seconds}, AppLanguage::simplifiedChinese), chinese);
    }
}

class DisplayValuesTest : public test::ModelTest
{
protected:
    void restore(const TimerSnapshot& snapshot)
    {
        ASSERT_TRUE(ActiveTimerPersistence(disk()).save(snapshot));
        launch();
    }
    void record(TimerPhase phase, double seconds, SessionOutcome outcome)
    {
        FinishedSession session;
        session.id = Uuid::random();
        session.phase = phase;
        session.outcome = outcome;
        session.effectiveDuration = Seconds{seconds};
        session.endedAt = clock.now() + Seconds{static_cast<double>(m_recorded++)};
        SessionStore store({"/data/sessions-v1.json", std::nullopt}, historyDisk());
        store.insert(session);
    }

private:
    int m_recorded = 0;
};

TEST_F(DisplayValuesTest, progress_exists_only_while_a_phase_is_under_way)
{
    launchAndStart();
    scheduler.advance(Seconds{1125});
    EXPECT_DOUBLE_EQ(model().progress(), 0.75);
    EXPECT_EQ(model().menuBarTitle(), "06:15");
    model().pause();
    EXPECT_DOUBLE_EQ(model().progress(), 0.75);
    model().endCurrentPhase();
    EXPECT_EQ(model().progress(), 0.0);
    EXPECT_EQ(model().menuBarTitle(), "00:00");
    model().dismissCompletion();
    EXPECT_EQ(model().progress(), 0.0);
    EXPECT_EQ(model().menuBarTitle(), "");
    TimerSnapshot empty;
    empty.runState = TimerRunState::paused;
    restore(empty);
    EXPECT_EQ(model().progress(), 0.0);
}

TEST_F(DisplayValuesTest, an_end_is_presented_unless_the_next_phase_starts_by_itself)
{
    for (const bool startsByItself : {false, true}) {
        defaults.values.erase("Brevlin.activeTimerSnapshot.v1");
        launch();
        model().commitTimerSettings(
            {Seconds{60}, Seconds{60}, Seconds{60}, 4, startsByItself, !startsByItself, {}});
        EXPECT_FALSE(model().isEndPresented());
        model().start();
        EXPECT_EQ(model().isEndPresented(), !startsByItself);
        model().pause();
        EXPECT_FALSE(model().isEndPresented());
        model().endCurrentPhase();
        EXPECT_TRUE(model().isEndPresented());
        model().advance();
        EXPECT_EQ(model().isEndPresented(), startsByItself);
    }
}

TEST_F(DisplayValuesTest, the_end_time_is_told_in_the_users_locale)
{
    clock.setNow(instantFromUnixTime(Seconds{1795500000})); // 2026-11-24 06:00:00 UTC
    launchAndStart();
    EXPECT_EQ(model().endTimeText(), "07:25");
    model().pause();
    scheduler.advance(Seconds{600});
    EXPECT_EQ(model().endTimeText(), "07:35");
    clock.setTimeZoneIdentifier("Asia/Shanghai");
    events.observer.didBecomeActive();
    EXPECT_EQ(model().endTimeText(), "14:35");
}

TEST_F(DisplayValuesTest, the_cycle_counts_focus_since_the_last_completed_long_break)
{
    record(TimerPhase::focus, 1500, SessionOutcome::completed);
    record(TimerPhase::longBreak, 900, SessionOutcome::completed);
    record(TimerPhase::focus, 600, SessionOutcome::endedEarly);
    record(TimerPhase::longBreak, 0, SessionOutcome::skipped);
    record(TimerPhase::shortBreak, 300, SessionOutcome::completed);
    record(TimerPhase::focus, 1500, SessionOutcome::completed);
    TimerSnapshot sixDone = freshSnapshot({});
    sixDone.completedFocusCount = 6;
    restore(sixDone);
    EXPECT_EQ(model().currentCycleFocusMinutes(), 35);
    EXPECT_EQ(model().cyclePosition(), 3);
    model().start();
    scheduler.advance(Seconds{125});
    EXPECT_EQ(model().cycleSummaryText(), "Cycle 3/4 · 37 focus min");
    model().setAppLanguage(AppLanguage::simplifiedChinese);
    EXPECT_EQ(model().cycleSummaryText(), "循环第 3/4 阶段 · 已专注 37 分钟");
    model().switchToNextPhase();
    scheduler.advance(Seconds{125});
    EXPECT_EQ(model().currentCycleFocusMinutes(), 37) << "a break is no focus";
}

} // namespace
} // namespace brevlin
