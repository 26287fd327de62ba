#include "app/app_model.h"
#include "app/timer_control.h"

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

constexpr Seconds addedTime{300.0};
constexpr std::int64_t longestMinutes = 180;

} // namespace

void AppModel::command(TimerCommand command, const TimerOperation& operation, AskForPermission permission)
{
    Q_EMIT commandReceived(command);
    m_undoOffer.withdrawTimers();
    m_parts.soundService->stop();
    run(operation, permission);
    Q_EMIT commandCarriedOut(command);
}

void AppModel::start()
{
    command(
        TimerCommand::start, [](TimerEngine& engine, Instant at) { return engine.start(at); },
        AskForPermission::yes);
}

void AppModel::pause()
{
    command(TimerCommand::pause, [](TimerEngine& engine, Instant at) { return engine.pause(at); });
}

void AppModel::resume()
{
    command(TimerCommand::resume, [](TimerEngine& engine, Instant at) { return engine.resume(at); });
}

void AppModel::addFiveMinutes()
{
    command(TimerCommand::addTime,
            [](TimerEngine& engine, Instant at) { return engine.addTime(addedTime, at); });
}

void AppModel::endCurrentPhase()
{
    const TimerSnapshot previous = m_snapshot;
    command(TimerCommand::endCurrentPhase,
            [](TimerEngine& engine, Instant at) { return engine.endEarly(at); });
    offerToGoOn(UndoOffer::Kind::endingEarly, previous);
}

void AppModel::switchToNextPhase()
{
    const TimerSnapshot previous = m_snapshot;
    command(TimerCommand::switchToNextPhase,
            [](TimerEngine& engine, Instant at) { return engine.switchAndStart(at); });
    offerToGoOn(UndoOffer::Kind::switching, previous);
}

void AppModel::advance()
{
    const bool isIdle = m_snapshot.runState == TimerRunState::idle;
    command(TimerCommand::advance, [isIdle](TimerEngine& engine, Instant at) {
        return isIdle ? engine.start(at) : engine.advance(at);
    });
}

void AppModel::skipPendingPhase()
{
    const TimerSnapshot previous = m_snapshot;
    const TimerPhase pending = m_snapshot.phase;
    command(TimerCommand::skipPendingPhase,
            [](TimerEngine& engine, Instant at) { return engine.skipPendingPhase(at); });
    if (m_snapshot.runState == TimerRunState::ringing && m_snapshot.phase != pending) {
        Q_EMIT pendingPhaseSkipped(pending);
    }
    offerToGoOn(UndoOffer::Kind::skipping, previous);
}

void AppModel::dismissCompletion()
{
    Q_EMIT commandReceived(TimerCommand::dismissCompletion);
    m_undoOffer.withdrawTimers();
    m_parts.soundService->stop();
    if (m_snapshot.runState == TimerRunState::ringing) {
        run([](TimerEngine& engine, Instant at) { return engine.reset(at); });
    }
    Q_EMIT commandCarriedOut(TimerCommand::dismissCompletion);
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
    const auto duration = std::chrono::minutes{std::clamp<std::int64_t>(minutes, 1, longestMinutes)};
    changePreferences(
        [&](AppPreferences& preferences) { preferences.timerSettings.setDuration(phase, duration); });
}

void AppModel::commitTimerSettings(const TimerSettings& settings)
{
    changePreferences([&](AppPreferences& preferences) { preferences.timerSettings = settings; });
}

void AppModel::setShowTopCapsuleWhileRunning(bool show)
{
    changePreferences([=](AppPreferences& preferences) { preferences.showTopCapsuleWhileRunning = show; });
}

void AppModel::setPlayCompletionSound(bool play)
{
    changePreferences([=](AppPreferences& preferences) { preferences.playCompletionSound = play; });
}

void AppModel::setAppLanguage(AppLanguage language)
{
    changePreferences([=](AppPreferences& preferences) { preferences.appLanguage = language; });
}

void AppModel::setTopTimerAppearance(TopTimerAppearance appearance)
{
    changePreferences([=](AppPreferences& preferences) { preferences.topTimerAppearance = appearance; });
}

void AppModel::restoreDefaultPreferences()
{
    changePreferences([](AppPreferences& preferences) { preferences = {}; });
    changeAddedPreferences([](AddedPreferences& preferences) { preferences = {}; });
    Q_EMIT defaultPreferencesRestored();
}

void AppModel::activateMainWindow(const std::string& token)
{
    Q_EMIT mainWindowActivationRequested(token);
}

void AppModel::perform(ShortcutAction action, const std::string& token)
{
    if (const auto verb = verbOf(action)) {
        [[maybe_unused]] const auto done = TimerControl::carryOut(*this, *verb); // or nothing is to be done
    } else {
        activateMainWindow(token);
    }
}

void AppModel::changePreferences(const std::function<void(AppPreferences&)>& change)
{
    AppPreferences preferences = m_preferences;
    change(preferences);
    preferences.timerSettings = preferences.timerSettings.sanitized();
    // Preferences that cannot be expressed hold for this run.
    [[maybe_unused]] const auto saved = m_parts.preferencesStore->save(preferences);
    retryWrites();
    adopt(preferences);
}

// What follows from a preference follows from its change, whoever made it.
void AppModel::adopt(const AppPreferences& preferences)
{
    const AppPreferences before = std::exchange(m_preferences, preferences);
    if (before == preferences) {
        return;
    }
    Q_EMIT preferencesChanged();
    if (before.appLanguage != preferences.appLanguage) {
        m_messages.setLanguage(preferences.appLanguage);
        m_announcer.setLanguage(preferences.appLanguage);
        m_shortcuts.follow(m_addedPreferences, preferences.appLanguage);
    }
    if (before.playCompletionSound && !preferences.playCompletionSound) {
        m_parts.soundService->stop();
    }
    run([&](TimerEngine& engine, Instant) { return engine.updateSettings(preferences.timerSettings); });
}

} // namespace brevlin
