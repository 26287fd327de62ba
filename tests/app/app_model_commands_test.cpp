#include "app/model_fixture.h"

#include <set>

namespace brevlin {
namespace {

using enum TimerRunState;

class CommandsTest : public test::ModelTest
{
protected:
    void ring()
    {
        launchAndStart();
        scheduler.advance(Seconds{1500});
    }
};

TEST_F(CommandsTest, durations_keep_within_their_range_and_reach_an_idle_phase_at_once)
{
    launch();
    model().setDuration(0, TimerPhase::focus);
    EXPECT_EQ(stored().timerSettings.focusDuration, Seconds{60});
    EXPECT_EQ(model().remainingSeconds(), Seconds{60});
    model().setDuration(500, TimerPhase::longBreak);
    EXPECT_EQ(stored().timerSettings.longBreakDuration, Seconds{10800});
    model().start();
    const auto end = model().snapshot().expectedEndAt;
    model().setDuration(50, TimerPhase::focus);
    EXPECT_EQ(model().snapshot().expectedEndAt, end);
    TimerSettings odd;
    odd.focusSessionsPerLongBreak = 0;
    model().commitTimerSettings(odd);
    EXPECT_EQ(model().preferences().timerSettings.focusSessionsPerLongBreak, 1);
    EXPECT_EQ(stored().timerSettings.focusSessionsPerLongBreak, 1);
}

TEST_F(CommandsTest, preferences_are_stored_as_they_change)
{
    launch();
    int changes = 0;
    QObject::connect(&model(), &AppModel::preferencesChanged, [&] { ++changes; });
    model().setAppLanguage(AppLanguage::simplifiedChinese);
    model().setTopTimerAppearance(TopTimerAppearance::light);
    model().setShowTopCapsuleWhileRunning(false);
    model().setPlayCompletionSound(false);
    EXPECT_EQ(changes, 4);
    EXPECT_EQ(center.categories.front().actions.front().title, "开始下一阶段");
    const AppPreferences before = model().preferences();
    launch();
    EXPECT_EQ(model().preferences(), before);
    model().start();
    scheduler.advance(Seconds{1500});
    EXPECT_TRUE(player.log.empty()) << "the sound is switched off";
    model().setPlayCompletionSound(true);
    TimerSettings strong;
    strong.alertIntensity = AlertIntensity::strong;
    model().commitTimerSettings(strong);
    model().advance();
    scheduler.advance(Seconds{300});
    ASSERT_TRUE(model().isAlertSoundPlaying());
    model().setTopTimerAppearance(TopTimerAppearance::dark);
    EXPECT_TRUE(model().isAlertSoundPlaying());
    model().setPlayCompletionSound(false);
    EXPECT_FALSE(model().isAlertSoundPlaying());
}

TEST_F(CommandsTest, preferences_that_could_not_be_written_are_written_at_quit)
{
    launch();
    defaults.failures.failOperation(1);
    model().setTopTimerAppearance(TopTimerAppearance::light);
    EXPECT_EQ(model().unsaved(), std::vector<std::string>{}) << "tried again at once";
    defaults.failures.failFrom(1);
    model().setAppLanguage(AppLanguage::english);
    model().setPlayCompletionSound(false);
    EXPECT_EQ(model().unsaved(), std::vector<std::string>{"preferences"});
    defaults.failures.failNothing();
    launch();
    EXPECT_EQ(model().preferences().topTimerAppearance, TopTimerAppearance::light);
}

TEST_F(CommandsTest, defaults_return_with_the_language_and_without_touching_the_history)
{
    ring();
    model().setDuration(50, TimerPhase::focus);
    model().restoreDefaultPreferences();
    EXPECT_EQ(model().preferences(), AppPreferences{});
    EXPECT_EQ(model().language(), AppLanguage::simplifiedChinese);
    EXPECT_EQ(model().sessions().size(), 1U);
    EXPECT_EQ(center.categories.front().actions.front().title, "开始下一阶段");
}

TEST_F(CommandsTest, history_commands_change_the_file_or_nothing)
{
    ring();
    model().advance();
    model().endCurrentPhase();
    ASSERT_EQ(model().sessions().size(), 2U);
    files.failures.failFrom(1);
    const SessionRecord latest = model().sessions().front();
    model().deleteSession(latest);
    EXPECT_EQ(messageTitle(), "Unable to delete record");
    model().messages().clearAppMessage();
    model().clearHistory();
    EXPECT_EQ(messageTitle(), "Unable to clear history");
    EXPECT_EQ(model().sessions().size(), 2U);
    files.failures.failNothing();
    model().deleteSession(latest);
    EXPECT_EQ(model().sessions().size(), 1U);
    model().clearHistory();
    launch();
    EXPECT_TRUE(model().sessions().empty());
}

TEST_F(CommandsTest, asking_for_permission_schedules_the_running_phase)
{
    center.settings.state = NotificationAuthorizationState::denied;
    launchAndStart();
    EXPECT_TRUE(center.pending.empty());
    model().announcer().requestNotificationPermission();
    EXPECT_EQ(center.pending.size(), 1U);
    EXPECT_EQ(model().announcer().notificationAuthorization().state,
              NotificationAuthorizationState::authorized);
    model().setAppLanguage(AppLanguage::simplifiedChinese);
    center.failure = "refused";
    model().announcer().requestNotificationPermission();
    EXPECT_EQ(messageTitle(), "无法开启通知");
}

TEST_F(CommandsTest, launch_at_login_is_changed_only_where_needed_and_told_of_where_it_fails_or_has_no_effect)
{
    using enum LoginItem::Status;
    using Shown = LaunchAtLoginStatus;
    const char* const withoutEffect = "The entry was written, but the desktop does not take it.";
    struct Case
    {
        LoginItem::Status before;
        bool isWanted;
        LoginItem::Status afterRegistering;
        const char* failure;
        int changes;
        Shown shown;
        const char* message;
    };
    for (const Case& c : {Case{notRegistered, true, enabled, "", 1, Shown::enabled, ""},
                          {notRegistered, true, requiresApproval, "", 1, Shown::requiresApproval, ""},
                          {notFound, true, enabled, "", 1, Shown::enabled, ""},
                          {notRegistered, true, notFound, "", 1, Shown::unavailable, withoutEffect},
                          {enabled, true, enabled, "", 0, Shown::enabled, ""},
                          {requiresApproval, true, enabled, "", 0, Shown::requiresApproval, ""},
                          {enabled, false, enabled, "", 1, Shown::disabled, ""},
                          {requiresApproval, false, enabled, "", 1, Shown::disabled, ""},
                          {notFound, false, enabled, "", 1, Shown::disabled, ""},
                          {notRegistered, false, enabled, "", 0, Shown::disabled, ""},
                          {notRegistered, true, enabled, "no", 1, Shown::disabled, "无法开启登录时启动：no"},
                          {enabled, false, enabled, "no", 1, Shown::enabled, "无法关闭登录时启动：no"}}) {
        loginItem.current = c.before;
        loginItem.afterRegistering = c.afterRegistering;
        loginItem.failure = c.failure;
        loginItem.changes = 0;
        launch();
        model().launchAtLogin().setLaunchAtLogin(c.isWanted);
        EXPECT_EQ(messageDetail(), c.message);
        EXPECT_EQ(messageTitle(), *c.message == '\0' ? "" : "Launch at login failed");
        EXPECT_EQ(model().launchAtLogin().launchAtLoginStatus(), c.shown) << static_cast<int>(c.before);
        EXPECT_EQ(loginItem.changes, c.changes) << static_cast<int>(c.before) << c.isWanted;
    }
    model().launchAtLogin().openLoginItemSettings();
    EXPECT_EQ(loginItem.openedSettings, 1);
    LaunchAtLoginService service(loginItem);
    for (const std::string failure : {"no", ""}) {
        loginItem.failure = failure;
        service.setEnabled(false, [](const auto&) {});
        EXPECT_EQ(service.lastError().has_value(), !failure.empty()) << "a success clears it";
    }
}

TEST_F(CommandsTest, each_change_is_signalled_and_nothing_else)
{
    ring();
    std::set<std::string> signalled;
    const auto listen = [&](auto* sender, auto signal, const char* name) {
        QObject::connect(sender, signal, [&signalled, name] { signalled.insert(name); });
    };
    listen(&model(), &AppModel::sessionsChanged, "sessions");
    listen(&model().announcer(), &PhaseAnnouncer::notificationAuthorizationChanged, "authorization");
    listen(&model().launchAtLogin(), &LaunchAtLogin::launchAtLoginStatusChanged, "login");
    listen(&model(), &AppModel::alertSoundPlayingChanged, "sound");
    listen(&model().messages(), &AppMessages::appMessageChanged, "message");
    listen(&model(), &AppModel::ticked, "ticked");
    using Names = std::set<std::string>;
    const std::pair<std::function<void()>, Names> acts[] = {
        {[&] { model().launchAtLogin().setLaunchAtLogin(false); }, {"login"}},
        {[&] { loginItem.changed(); }, {}},
        {[&] { loginItem.current = LoginItem::Status::enabled, loginItem.changed(); }, {"login"}},
        {[&] { center.settingsChanged(); }, {}},
        {[&] { center.settings.alertsEnabled = true, center.settingsChanged(); }, {"authorization"}},
        {[&] { model().stopAlertSound(); }, {"sound"}},
        {[&] { model().stopAlertSound(); }, {}},
        {[&] { clock.setTimeZoneIdentifier("Asia/Tokyo"), events.observer.timeZoneDidChange(); }, {"ticked"}},
        {[&] { model().deleteSession(model().sessions().front()); }, {"sessions"}},
        {[&] { model().advance(), model().endCurrentPhase(); }, {"sessions"}},
        {[&] { model().clearHistory(); }, {"sessions"}},
        {[&] { loginItem.failure = "no", model().launchAtLogin().setLaunchAtLogin(false); },
         {"login", "message"}},
        {[&] { model().messages().clearAppMessage(); }, {"message"}},
        {[&] { model().messages().clearAppMessage(); }, {}},
    };
    for (const auto& [act, names] : acts) {
        signalled.clear();
        act();
        EXPECT_EQ(signalled, names) << &names - &acts[0].second;
    }
}

} // namespace
} // namespace brevlin
