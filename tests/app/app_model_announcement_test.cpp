#include "app/model_fixture.h"

#include <tuple>

namespace brevlin {
namespace {

using enum TimerRunState;
using Log = std::vector<std::string>;

class AppModelAnnouncementTest : public test::ModelTest
{
protected:
    void restartServer()
    {
        for (const auto state :
             {NotificationAuthorizationState::denied, NotificationAuthorizationState::authorized}) {
            EXPECT_TRUE(center.pending.empty());
            center.settings.state = state;
            center.settingsChanged();
        }
    }
};

TEST_F(AppModelAnnouncementTest, a_break_that_starts_by_itself_shows_no_island_but_sounds)
{
    storePreferences([](AppPreferences& p) {
        p.timerSettings.autoStartBreaks = true;
        p.timerSettings.alertIntensity = AlertIntensity::strong;
    });
    launchAndStart();
    int soundChanges = 0;
    QObject::connect(&model(), &AppModel::alertSoundPlayingChanged, [&] { ++soundChanges; });
    const int withdrawals = center.withdrawals;
    scheduler.advance(Seconds{1500});
    EXPECT_EQ(runState(), running);
    EXPECT_EQ(center.withdrawals, withdrawals) << "the announcement stays";
    EXPECT_EQ(soundChanges, 1);
    EXPECT_EQ(player.log, Log{"loop Glass"});
    EXPECT_TRUE(model().isAlertSoundPlaying());
    ASSERT_EQ(center.pending.size(), 1U);
    EXPECT_EQ(center.pending.front().title, "Break complete");
    EXPECT_TRUE(center.pending.front().timeSensitive);
}

TEST_F(AppModelAnnouncementTest, the_notification_follows_the_phase)
{
    launchAndStart();
    ASSERT_EQ(center.pending.size(), 1U);
    EXPECT_EQ(center.pending.front().delay, Seconds{1500});
    scheduler.advance(Seconds{10});
    model().pause();
    EXPECT_TRUE(center.pending.empty());
    const std::string identifier = "brevlin.timer." + model().snapshot().sessionID->text();
    scheduler.advance(Seconds{10});
    model().resume();
    model().addFiveMinutes();
    ASSERT_EQ(center.pending.size(), 1U);
    EXPECT_EQ(center.pending.front().identifier, identifier);
    EXPECT_EQ(center.pending.front().delay, Seconds{1790});
    model().switchToNextPhase();
    ASSERT_EQ(center.pending.size(), 1U);
    EXPECT_NE(center.pending.front().identifier, identifier);
}

TEST_F(AppModelAnnouncementTest, only_a_start_asks_for_permission_and_only_while_undetermined)
{
    using State = NotificationAuthorizationState;
    for (const auto& [before, requests, scheduled] : {std::tuple{State::notDetermined, 1, 1U},
                                                      {State::denied, 0, 0U},
                                                      {State::unknown, 0, 0U},
                                                      {State::authorized, 0, 1U},
                                                      {State::provisional, 0, 1U}}) {
        center.settings.state = before;
        center.permissionRequests = 0;
        center.pending.clear();
        launchAndStart();
        EXPECT_EQ(center.permissionRequests, requests);
        EXPECT_EQ(center.pending.size(), scheduled);
        model().endCurrentPhase();
        model().dismissCompletion();
    }
    center.settings.state = State::notDetermined;
    center.failure = "no server";
    launchAndStart();
    EXPECT_EQ(messageTitle(), "Unable to enable notifications");
    EXPECT_EQ(runState(), running);
}

TEST_F(AppModelAnnouncementTest, an_answer_that_comes_late_schedules_nothing_for_a_phase_that_is_over)
{
    center.answers = false;
    launch();
    center.answerNow();
    model().start();
    scheduler.advance(Seconds{5});
    EXPECT_EQ(model().remainingSeconds(), Seconds{1495}) << "the timer waits for nobody";
    model().pause();
    center.answerNow();
    EXPECT_TRUE(center.pending.empty());
    model().resume();
    center.failure = "the server is gone";
    center.answerNow();
    EXPECT_EQ(messageTitle(), "Failed to schedule notification");
    EXPECT_EQ(messageDetail(), "the server is gone");
}

TEST_F(AppModelAnnouncementTest, an_announcement_is_withdrawn_once_the_user_goes_on_and_not_by_its_own_end)
{
    struct Case
    {
        const char* command;
        std::function<void()> run;
        int withdrawals;
    };
    for (const Case& c : {Case{"nothing", [] {}, 0},
                          {"settings", [this] { model().setDuration(40, TimerPhase::shortBreak); }, 0},
                          {"activation", [this] { events.observer.didBecomeActive(); }, 0},
                          {"advance", [this] { model().advance(); }, 1},
                          {"skip", [this] { model().skipPendingPhase(); }, 1},
                          {"dismiss", [this] { model().dismissCompletion(); }, 1}}) {
        defaults.values.erase("Brevlin.activeTimerSnapshot.v1");
        launchAndStart();
        center.withdrawals = 0;
        scheduler.advance(Seconds{1500});
        ASSERT_EQ(runState(), ringing);
        c.run();
        EXPECT_EQ(center.withdrawals, c.withdrawals) << c.command;
    }
    launchAndStart();
    center.withdrawals = 0;
    model().pause();
    EXPECT_EQ(center.withdrawals, 0);
    model().endCurrentPhase();
    EXPECT_EQ(center.withdrawals, 1);
}

TEST_F(AppModelAnnouncementTest, a_server_that_comes_late_announces_the_running_phase)
{
    center.settings.state = NotificationAuthorizationState::unknown;
    launchAndStart();
    scheduler.advance(Seconds{100});
    restartServer();
    ASSERT_EQ(center.pending.size(), 1U);
    EXPECT_EQ(center.pending.front().delay, Seconds{1400});
    center.settings.alertsEnabled = true;
    center.settingsChanged();
    EXPECT_EQ(center.pending.size(), 1U);
    EXPECT_TRUE(model().announcer().notificationAuthorization().alertsEnabled);
    model().pause();
    restartServer();
    EXPECT_TRUE(center.pending.empty()) << "a pause has no end to announce";
    model().resume();
    center.pending.clear();
    center.settingsChanged();
    EXPECT_TRUE(center.pending.empty()) << "nothing has changed";
    clock.jump(model().remainingSeconds());
    restartServer();
    EXPECT_TRUE(center.pending.empty()) << "its end is there";
    EXPECT_EQ(messageTitle(), "");
}

TEST_F(AppModelAnnouncementTest, reactions_to_a_notification_act_for_their_own_run_only)
{
    int activations = 0;
    launchAndStart();
    QObject::connect(&model(), &AppModel::mainWindowActivationRequested, [&] { ++activations; });
    const std::string first = model().snapshot().sessionID->text();
    scheduler.advance(Seconds{1500});
    center.respond("dismiss", {{"sessionID", first}});
    center.respond("something else", {{"sessionID", first}});
    EXPECT_EQ(runState(), ringing);
    EXPECT_EQ(player.log.back(), "play Glass");
    center.respond("brevlin.timer.stop-alert", {{"sessionID", first}});
    EXPECT_EQ(player.log.back(), "stop Glass");
    center.respond("brevlin.timer.start-next", {{"sessionID", first}});
    EXPECT_EQ(runState(), running);
    center.respond("default", {{"sessionID", first}});
    EXPECT_EQ(activations, 0) << "that run is over and another one runs";
    player.log.clear();
    model().commitTimerSettings(
        {Seconds{60}, Seconds{60}, Seconds{60}, 4, true, true, AlertIntensity::strong});
    scheduler.advance(Seconds{300});
    ASSERT_TRUE(model().isAlertSoundPlaying());
    center.respond("default", {{"sessionID", model().snapshot().sessionID->text()}});
    EXPECT_EQ(activations, 1);
    EXPECT_FALSE(model().isAlertSoundPlaying());
    center.respond("default", {});
    EXPECT_EQ(activations, 2);
}

} // namespace
} // namespace brevlin
