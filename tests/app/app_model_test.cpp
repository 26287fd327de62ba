#include "app/model_fixture.h"

#include <cmath>
#include <tuple>

namespace brevlin {
namespace {

using enum TimerRunState;
using Log = std::vector<std::string>;

class AppModelTest : public test::ModelTest
{
protected:
    /// Of all that wait, which the user then closes.
    Log messageTitles()
    {
        Log titles;
        for (; model().messages().appMessage(); model().messages().clearAppMessage()) {
            titles.push_back(messageTitle());
        }
        return titles;
    }
};

TEST_F(AppModelTest, a_phase_counts_down_and_is_recorded_at_its_scheduled_end)
{
    launchAndStart();
    const Instant end = *model().snapshot().expectedEndAt;
    scheduler.advance(Seconds{1499.5});
    EXPECT_EQ(runState(), running);
    scheduler.advance(Seconds{0.5});
    EXPECT_EQ(runState(), ringing);
    EXPECT_EQ(model().snapshot().phase, TimerPhase::shortBreak);
    ASSERT_EQ(model().sessions().size(), 1U);
    EXPECT_EQ(model().sessions().front().endedAt, end);
    EXPECT_EQ(model().sessions().front().outcome(), SessionOutcome::completed);
    EXPECT_EQ(player.log, Log{"play Glass"});
    launch();
    EXPECT_EQ(runState(), ringing);
    EXPECT_EQ(model().sessions().size(), 1U);
}

TEST_F(AppModelTest, the_end_is_noticed_on_time_whenever_the_phase_began)
{
    for (const double offset : {0.0, 0.013, 0.25, 0.999}) {
        launch();
        scheduler.advance(Seconds{offset});
        model().start();
        // What pulls the ticks out of step: a pause of an odd length, and a clock that was set.
        scheduler.advance(Seconds{2.4});
        model().pause();
        scheduler.advance(Seconds{3.21});
        model().resume();
        scheduler.advance(Seconds{1.7});
        clock.jump(Seconds{-0.6});
        events.observer.clockDidChange();
        const Instant end = *model().snapshot().expectedEndAt;
        scheduler.advance(end - Seconds{1.0} - clock.now());
        while (runState() == running) {
            scheduler.advance(Seconds{0.001});
            ASSERT_LT(clock.now(), end + Seconds{1.0});
        }
        EXPECT_LT((clock.now() - end).count(), 0.0031);
        model().dismissCompletion();
        model().skipPendingPhase();
    }
}

TEST_F(AppModelTest, one_tick_publishes_the_remaining_time_once_and_nothing_else)
{
    launchAndStart();
    int remaining = 0;
    int others = 0;
    QObject::connect(&model(), &AppModel::remainingSecondsChanged, [&] { ++remaining; });
    QObject::connect(&model(), &AppModel::snapshotChanged, [&] { ++others; });
    QObject::connect(&model(), &AppModel::sessionsChanged, [&] { ++others; });
    QObject::connect(&model(), &AppModel::preferencesChanged, [&] { ++others; });
    const int writes = defaults.failures.operationCount();
    const Instant scheduled = center.pending.at(0).requestedAt;
    scheduler.advance(Seconds{1});
    EXPECT_EQ(center.pending.at(0).requestedAt, scheduled);
    EXPECT_EQ(remaining, 1);
    EXPECT_EQ(others, 0);
    EXPECT_EQ(defaults.failures.operationCount(), writes) << "a tick writes nothing";
    scheduler.advance(Seconds{9});
    EXPECT_EQ(remaining, 10);
    EXPECT_EQ(model().remainingSeconds(), Seconds{1490});
    events.observer.didBecomeActive();
    EXPECT_EQ(others, 0);
    EXPECT_EQ(defaults.failures.operationCount(), writes) << "nor does an activation";
    model().pause();
    EXPECT_EQ(others, 1);
}

TEST_F(AppModelTest, an_idle_program_ticks_or_it_would_miss_midnight)
{
    scheduler.advance(Seconds{3.3}); // no whole number of ticks before midnight
    launch();
    int ticks = 0;
    QObject::connect(&model(), &AppModel::ticked, [&] { ++ticks; });
    scheduler.advance(Seconds{30});
    EXPECT_EQ(ticks, 3);
    events.observer.didWake();
    EXPECT_EQ(ticks, 4);
    const Instant midnight = model().calendar().interval(CalendarUnit::day, clock.now()).end;
    scheduler.advance(midnight - clock.now() - Seconds{0.5});
    ticks = 0;
    scheduler.advance(Seconds{0.6});
    EXPECT_EQ(ticks, 1) << "at once when the day begins";
    EXPECT_EQ(model().announcer().notificationAuthorization(), center.settings);
}

TEST_F(AppModelTest, a_phase_that_ended_while_the_program_was_closed_was_completed_away)
{
    launchAndStart();
    const Instant end = *model().snapshot().expectedEndAt;
    modelOrNone.reset();
    clock.jump(Seconds{7200});
    launch();
    ASSERT_EQ(model().sessions().size(), 1U);
    EXPECT_EQ(model().sessions().front().outcome(), SessionOutcome::completedWhileAway);
    EXPECT_EQ(model().sessions().front().endedAt, end);
    EXPECT_EQ(runState(), ringing);
}

TEST_F(AppModelTest, a_phase_whose_end_is_ahead_goes_on_after_a_restart)
{
    launchAndStart();
    const TimerSnapshot before = model().snapshot();
    modelOrNone.reset();
    center.pending.clear();
    clock.jump(Seconds{100.25});
    launch();
    EXPECT_EQ(model().snapshot(), before);
    EXPECT_EQ(model().remainingSeconds(), Seconds{1399.75});
    EXPECT_TRUE(model().sessions().empty());
    EXPECT_EQ(center.pending.size(), 1U) << "its end is announced again";
    modelOrNone = std::make_unique<AppModel>(makeParts());
    EXPECT_EQ(model().snapshot(), before);
    EXPECT_EQ(model().remainingSeconds(), Seconds{1399.75}) << "from the first frame on";
    modelOrNone.reset();
    EXPECT_FALSE(events.observer.didWake || center.settingsChanged || loginItem.changed);
}

TEST_F(AppModelTest, a_start_that_changes_nothing_writes_nothing)
{
    launch();
    modelOrNone.reset();
    modelOrNone = std::make_unique<AppModel>(makeParts());
    defaults.failures.failFrom(1); // reading is over
    scheduler.runPending();
    EXPECT_EQ(messageTitle(), "");
    model().start();
    EXPECT_EQ(messageTitle(), "Failed to save timer state");
}

TEST_F(AppModelTest, an_unreadable_timer_is_reset_kept_and_told_of)
{
    const std::string damaged = R"({"phase":"focus","runState":"sleeping"})";
    defaults.values["Brevlin.activeTimerSnapshot.v1"] = damaged;
    launch();
    EXPECT_EQ(model().snapshot(), freshSnapshot({}));
    EXPECT_EQ(messageTitle(), "Timer state reset");
    EXPECT_EQ(messageDetail(), "The previous timer state could not be read and was safely reset.");
    model().messages().clearAppMessage();
    EXPECT_FALSE(model().messages().appMessage());
}

TEST_F(AppModelTest, an_unreadable_history_is_told_of_in_the_stored_language)
{
    files.files["/data/sessions-v1.json"] = "{";
    launch();
    EXPECT_EQ(messageTitle(), "Failed to load local history");
    EXPECT_NE(messageDetail().find("“/data/sessions-v1.json” is kept as it is"), std::string::npos);
    storePreferences([](AppPreferences& p) { p.appLanguage = AppLanguage::simplifiedChinese; });
    launch();
    EXPECT_EQ(messageTitle(), "本地记录读取失败");
    EXPECT_TRUE(messageDetail().starts_with("无法读取专注记录："));
    EXPECT_NE(messageDetail().find("“/data/sessions-v1.json”会原样保留"), std::string::npos);
}

TEST_F(AppModelTest, what_cannot_be_saved_is_told_of_one_by_one_and_tried_again)
{
    launchAndStart();
    files.failures.failFrom(1);
    defaults.failures.failFrom(1);
    scheduler.advance(Seconds{1500});
    EXPECT_EQ(runState(), ringing);
    EXPECT_EQ(model().sessions().size(), 1U) << "it is in the history all the same";
    model().advance();
    EXPECT_EQ(runState(), running);
    EXPECT_EQ(model().unsaved(), (Log{"history (records: 1)", "timer state"}));
    EXPECT_EQ(messageTitle(), "Failed to save record");
    EXPECT_TRUE(messageDetail().ends_with(". The record stays in the history, and saving is tried again."));
    model().messages().clearAppMessage();
    EXPECT_EQ(messageTitle(), "Failed to save timer state") << "it did not take the other one's place";
    EXPECT_TRUE(messageDetail().ends_with(". Saving is tried again."));
    model().messages().clearAppMessage();
    EXPECT_EQ(messageTitle(), "") << "the same failure does not queue up twice";
    events.observer.didBecomeActive();
    events.observer.didWake();
    EXPECT_EQ(messageTitle(), "") << "what is tried again in vain is not told again";
    files.failures.failNothing();
    defaults.failures.failNothing();
    model().pause();
    EXPECT_EQ(model().unsaved(), Log{}) << "where there is room for this there may be room for more";
    const TimerSnapshot snapshot = model().snapshot();
    launch();
    EXPECT_EQ(model().snapshot(), snapshot);
    EXPECT_EQ(model().sessions().size(), 1U);
}

TEST_F(AppModelTest, a_record_reaches_the_disk_before_the_timer_that_has_moved_on)
{
    launchAndStart();
    thread.runsAtOnce = false;
    const auto timerBefore = defaults.values;
    scheduler.advance(Seconds{1500});
    EXPECT_EQ(runState(), ringing) << "commands and ends wait for no disk";
    EXPECT_EQ(model().unsaved().size(), 2U);
    EXPECT_TRUE(files.files.empty());
    while (files.files.empty()) {
        EXPECT_EQ(defaults.values, timerBefore);
        thread.runOne();
    }
    thread.runAll();
    EXPECT_NE(defaults.values, timerBefore);
    EXPECT_EQ(model().unsaved(), Log{});
}

TEST_F(AppModelTest, quitting_tries_again)
{
    launchAndStart();
    defaults.failures.failFrom(1);
    model().pause();
    const TimerSnapshot paused = model().snapshot();
    defaults.failures.failNothing();
    launch();
    EXPECT_EQ(model().snapshot(), paused);
    for (const auto& tell : {&SystemEvents::Observer::willSleep, &SystemEvents::Observer::didWake}) {
        defaults.failures.failFrom(1);
        model().performPrimaryAction();
        EXPECT_EQ(model().unsaved(), Log{"timer state"});
        defaults.failures.failNothing();
        (events.observer.*tell)();
        EXPECT_EQ(model().unsaved(), Log{}) << "going to sleep and waking, too";
    }
}

TEST_F(AppModelTest, timer_history_and_preferences_that_could_not_be_read_are_all_told_and_come_back)
{
    const Instant end = *launchAndStart().snapshot().expectedEndAt;
    scheduler.advance(Seconds{100});
    model().endCurrentPhase();
    model().advance();
    storePreferences([](AppPreferences& p) { p.topTimerAppearance = TopTimerAppearance::light; });
    modelOrNone.reset();
    const auto values = defaults.values;
    defaults.unreadable = {"Brevlin.activeTimerSnapshot.v1", "Brevlin.preferences.v1"};
    files.unreadable = {"/data/sessions-v1.json"};
    launch();
    EXPECT_EQ(messageTitles(),
              (Log{"偏好设置读取失败 · Failed to load preferences", "计时状态读取失败", "本地记录读取失败"}));
    EXPECT_EQ(runState(), idle);
    model().setDuration(40, TimerPhase::longBreak);
    model().setPlayCompletionSound(false);
    std::vector<std::size_t> sizes;
    QObject::connect(&model(), &AppModel::sessionsChanged,
                     [&] { sizes.push_back(model().sessions().size()); });
    events.observer.didBecomeActive();
    EXPECT_EQ(defaults.values, values) << "nothing is written over what could not be read";
    EXPECT_EQ(messageTitle(), "") << "told once";

    defaults.unreadable.clear();
    files.unreadable.clear();
    clock.setNow(end + Seconds{1000});
    events.observer.didBecomeActive();
    EXPECT_EQ(model().language(), AppLanguage::english);
    EXPECT_EQ(model().preferences().topTimerAppearance, TopTimerAppearance::light);
    EXPECT_EQ(model().preferences().timerSettings.longBreakDuration, Seconds{2400}) << "chosen meanwhile";
    EXPECT_FALSE(model().preferences().playCompletionSound) << "chosen meanwhile";
    EXPECT_EQ(runState(), ringing);
    EXPECT_EQ(sizes, (std::vector<std::size_t>{1, 2}));
    EXPECT_EQ(model().sessions().front().outcome(), SessionOutcome::completedWhileAway);
    EXPECT_EQ(model().unsaved(), Log{});
    EXPECT_EQ(defaults.values.size(), 2U) << "nothing was set aside";
    EXPECT_EQ(launch().language(), AppLanguage::english);
}

TEST_F(AppModelTest, what_is_read_late_holds_without_more_and_damage_is_told_of)
{
    const std::string timer = "Brevlin.activeTimerSnapshot.v1";
    defaults.values[timer] = "{";
    defaults.unreadable = {timer, "Brevlin.preferences.v1"};
    launch();
    defaults.unreadable.clear();
    scheduler.advance(Seconds{600});
    EXPECT_EQ(model().language(), AppLanguage::english);
    EXPECT_EQ(messageTitles().back(), "Timer state reset");
    clock.setNow(Instant{Seconds{HUGE_VAL}}); // which no document can express
    model().start();
    EXPECT_EQ(messageTitle(), "Failed to save timer state");
    EXPECT_FALSE(messageDetail().ends_with("again."));
}

TEST(AppMessages, only_the_same_message_is_left_out_while_it_waits)
{
    AppMessages messages;
    for (const auto& [title, detail] : {std::pair{"a", "1"}, {"a", "2"}, {"b", "2"}, {"a", "1"}}) {
        messages.raise(std::string(title), detail);
    }
    int count = 0;
    for (; messages.appMessage(); messages.clearAppMessage()) {
        ++count;
    }
    EXPECT_EQ(count, 3);
}

TEST_F(AppModelTest, a_phase_that_was_superseded_before_it_could_be_read_becomes_a_record)
{
    for (const auto& [seconds, outcome, end] : {std::tuple{600.0, SessionOutcome::endedEarly, 600.0},
                                                {2000.0, SessionOutcome::completedWhileAway, 1500.0}}) {
        files.files.clear();
        const Instant start = clock.now();
        launchAndStart();
        modelOrNone.reset();
        clock.jump(Seconds{seconds});
        defaults.unreadable = {"Brevlin.activeTimerSnapshot.v1"};
        launchAndStart();
        const TimerSnapshot running = model().snapshot();
        EXPECT_NE(messageDetail().find(". The file stays as it is"), std::string::npos);
        scheduler.advance(Seconds{60});
        defaults.unreadable.clear();
        events.observer.didBecomeActive();
        EXPECT_EQ(model().snapshot(), running);
        ASSERT_EQ(model().sessions().size(), 1U);
        EXPECT_EQ(model().sessions().front().outcome(), outcome);
        EXPECT_EQ(model().sessions().front().endedAt, start + Seconds{end});
        EXPECT_EQ(launch().snapshot(), running);
        defaults.values.erase("Brevlin.activeTimerSnapshot.v1");
    }
}

TEST_F(AppModelTest, waking_and_activation_complete_what_ended_meanwhile)
{
    launch();
    // A tick may come before the news of waking, which may never come.
    for (const auto& [sleeps, comesBack] :
         {std::pair<bool, std::function<void()>>{true,
                                                 [&] {
                                                     scheduler.advance(Seconds{1});
                                                 }},
          {true,
           [&] {
               events.observer.didWake();
           }},
          {false, [&] {
               events.observer.didBecomeActive();
           }}}) {
        model().performPrimaryAction();
        if (sleeps)
            events.observer.willSleep();
        clock.jump(Seconds{3000});
        comesBack();
        EXPECT_EQ(runState(), ringing);
        EXPECT_EQ(model().sessions().front().outcome(),
                  sleeps ? SessionOutcome::completedWhileAway : SessionOutcome::completed);
    }
    EXPECT_EQ(model().sessions().size(), 3U);
}

TEST_F(AppModelTest, another_time_zone_is_noticed_whoever_tells_of_it)
{
    for (const auto& tell :
         {&SystemEvents::Observer::timeZoneDidChange, &SystemEvents::Observer::didWake,
          &SystemEvents::Observer::didBecomeActive, &SystemEvents::Observer::clockDidChange}) {
        clock.setTimeZoneIdentifier("Europe/Berlin");
        launch();
        clock.setTimeZoneIdentifier("Asia/Tokyo");
        EXPECT_EQ(model().calendar().timeZone()->identifier(), "Europe/Berlin");
        (events.observer.*tell)();
        EXPECT_EQ(model().calendar().timeZone()->identifier(), "Asia/Tokyo");
    }
}

TEST_F(AppModelTest, a_set_clock_is_shown_at_once)
{
    launchAndStart();
    scheduler.advance(Seconds{600});
    clock.jump(Seconds{-60});
    events.observer.clockDidChange();
    EXPECT_EQ(model().remainingSeconds(), Seconds{960});
    clock.jump(Seconds{-5000});
    events.observer.clockDidChange();
    EXPECT_EQ(model().remainingSeconds(), Seconds{1500}) << "no more than the phase has";
    EXPECT_EQ(model().endTimeText(), model().calendar().shortTimeText(*model().snapshot().expectedEndAt));
    clock.jump(Seconds{7000});
    events.observer.clockDidChange();
    EXPECT_EQ(runState(), ringing);
}

} // namespace
} // namespace brevlin
