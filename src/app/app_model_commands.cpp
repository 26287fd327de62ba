#include "app/app_model.h"

#include <algorithm>

namespace brevlin {

namespace {

constexpr BilingualText launchAtLoginFailed{"登录启动设置失败", "Launch at login failed"};
constexpr BilingualText entryWithoutEffect{"登录启动项已写入，但系统没有采用。",
                                           "The entry was written, but the desktop does not take it."};

constexpr Seconds addedTime{300.0};
constexpr std::int64_t longestMinutes = 180;

} // namespace

void AppModel::start()
{
    m_parts.soundService->stop();
    m_parts.capsule.clearMorphState();
    run([](TimerEngine& engine, Instant at) { return engine.start(at); }, AskForPermission::yes);
}

void AppModel::pause()
{
    m_parts.soundService->stop();
    run([](TimerEngine& engine, Instant at) { return engine.pause(at); });
}

void AppModel::resume()
{
    m_parts.soundService->stop();
    run([](TimerEngine& engine, Instant at) { return engine.resume(at); });
}

void AppModel::addFiveMinutes()
{
    m_parts.soundService->stop();
    run([](TimerEngine& engine, Instant at) { return engine.addTime(addedTime, at); });
}

void AppModel::endCurrentPhase()
{
    m_parts.soundService->stop();
    m_parts.capsule.clearMorphState();
    run([](TimerEngine& engine, Instant at) { return engine.endEarly(at); });
}

void AppModel::switchToNextPhase()
{
    m_parts.soundService->stop();
    m_parts.capsule.clearMorphState();
    run([](TimerEngine& engine, Instant at) { return engine.switchAndStart(at); });
}

void AppModel::advance()
{
    m_parts.soundService->stop();
    m_parts.capsule.beginCompletionCollapse();
    const bool isIdle = m_snapshot.runState == TimerRunState::idle;
    run([isIdle](TimerEngine& engine, Instant at) { return isIdle ? engine.start(at) : engine.advance(at); });
    m_parts.capsule.finishCompletionCollapse();
}

void AppModel::skipPendingPhase()
{
    m_parts.soundService->stop();
    m_parts.capsule.cancelMorph();
    const TimerPhase pending = m_snapshot.phase;
    run([](TimerEngine& engine, Instant at) { return engine.skipPendingPhase(at); });
    if (m_snapshot.runState == TimerRunState::ringing && m_snapshot.phase != pending) {
        m_parts.capsule.presentCompletion({*completionTitle(pending, SessionOutcome::skipped, language())});
    }
}

void AppModel::dismissCompletion()
{
    m_parts.soundService->stop();
    m_parts.capsule.cancelMorph();
    if (m_snapshot.runState == TimerRunState::ringing) {
        run([](TimerEngine& engine, Instant at) { return engine.reset(at); });
    }
    m_parts.capsule.clearMorphState();
    m_parts.capsule.hide();
}

void AppModel::performPrimaryAction()
{
    switch (m_snapshot.runState) {
    case TimerRunState::idle:
        start();
        break;
    case TimerRunState::running:
        pause();
        break;
    case TimerRunState::paused:
        resume();
        break;
    case TimerRunState::ringing:
        advance();
        break;
    }
}

void AppModel::stopAlertSound()
{
    m_parts.soundService->stop();
}

void AppModel::setDuration(std::int64_t minutes, TimerPhase phase)
{
    TimerSettings settings = m_preferences.timerSettings;
    settings.setDuration(phase, std::chrono::minutes{std::clamp<std::int64_t>(minutes, 1, longestMinutes)});
    commitTimerSettings(settings);
}

void AppModel::commitTimerSettings(const TimerSettings& settings)
{
    AppPreferences preferences = m_preferences;
    preferences.timerSettings = settings.sanitized();
    commitPreferences(preferences);
    run([&](TimerEngine& engine, Instant) { return engine.updateSettings(preferences.timerSettings); });
}

void AppModel::setShowTopCapsuleWhileRunning(bool show)
{
    AppPreferences preferences = m_preferences;
    preferences.showTopCapsuleWhileRunning = show;
    commitPreferences(preferences);
    if (!show) {
        m_parts.capsule.foldTimerCapsule();
    }
    m_parts.capsule.refresh();
}

void AppModel::setPlayCompletionSound(bool play)
{
    AppPreferences preferences = m_preferences;
    preferences.playCompletionSound = play;
    commitPreferences(preferences);
    if (!play) {
        m_parts.soundService->stop();
    }
}

void AppModel::setAppLanguage(AppLanguage language)
{
    AppPreferences preferences = m_preferences;
    preferences.appLanguage = language;
    commitPreferences(preferences);
    m_parts.notificationService->setLanguage(language);
    m_parts.capsule.refresh();
}

void AppModel::setTopTimerAppearance(TopTimerAppearance appearance)
{
    AppPreferences preferences = m_preferences;
    preferences.topTimerAppearance = appearance;
    commitPreferences(preferences);
    m_parts.capsule.refresh();
}

void AppModel::restoreDefaultPreferences()
{
    commitPreferences(AppPreferences{});
    m_parts.notificationService->setLanguage(language());
    m_parts.capsule.foldTimerCapsule();
    run([this](TimerEngine& engine, Instant) { return engine.updateSettings(m_preferences.timerSettings); });
}

void AppModel::deleteSession(const SessionRecord& record)
{
    m_parts.sessionStore->remove(record);
    Q_EMIT sessionsChanged();
}

void AppModel::clearHistory()
{
    m_parts.sessionStore->clear();
    Q_EMIT sessionsChanged();
}

void AppModel::setLaunchAtLogin(bool enabled)
{
    const auto status = m_parts.launchAtLoginService->setEnabled(enabled);
    if (status) {
        publishLaunchAtLoginStatus(*status);
        const bool hasEffect =
            *status == LaunchAtLoginStatus::enabled || *status == LaunchAtLoginStatus::requiresApproval;
        if (enabled && !hasEffect) {
            raise(launchAtLoginFailed, std::string{entryWithoutEffect.in(language())});
        }
    } else {
        raise(launchAtLoginFailed, status.error().errorDescription());
    }
}

void AppModel::openLoginItemSettings()
{
    m_parts.launchAtLoginService->openSettings();
}

void AppModel::activateMainWindow()
{
    Q_EMIT mainWindowActivationRequested();
}

void AppModel::commitPreferences(const AppPreferences& preferences)
{
    const bool changed = m_preferences != preferences;
    m_preferences = preferences;
    // Preferences that cannot be expressed hold for this run.
    [[maybe_unused]] const auto saved = m_parts.preferencesStore->save(preferences);
    retryWrites();
    if (changed) {
        Q_EMIT preferencesChanged();
    }
}

} // namespace brevlin
