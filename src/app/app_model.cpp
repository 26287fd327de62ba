#include "app/app_model.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

constexpr BilingualText timerStateReset{"计时状态已重置", "Timer state reset"};
constexpr BilingualText timerStateResetDetail{
    "上次保存的计时状态无法读取，已安全恢复为默认状态。",
    "The previous timer state could not be read and was safely reset."};
constexpr BilingualText historyUnreadable{"本地记录读取失败", "Failed to load local history"};
constexpr BilingualText recordNotSaved{"记录保存失败", "Failed to save record"};
constexpr BilingualText timerStateNotSaved{"计时状态保存失败", "Failed to save timer state"};

constexpr const char* completionSoundName = "Glass";
constexpr Seconds tickInterval{1.0};

// Whether the timer has moved on from the end that was announced last. The completion itself is what the
// announcement is about.
bool outdatesAnnouncement(const TimerTransition& transition, const TimerSnapshot& previous)
{
    const TimerSnapshot& next = transition.snapshot;
    const bool movedOn = next.sessionID != previous.sessionID || next.phase != previous.phase ||
                         (next.runState != previous.runState && previous.runState == TimerRunState::ringing);
    const bool completes = transition.finishedSession && isCompletion(transition.finishedSession->outcome);
    return movedOn && !completes;
}

} // namespace

AppModel::AppModel(AppModelParts parts, QObject* parent)
    : QObject(parent)
    , m_parts(std::move(parts))
    , m_calendar(m_parts.clock.timeZoneIdentifier(), m_parts.userLocale)
{
    restore();
    connectParts();
    startTicker();
    observeSystemEvents();
}

AppModel::~AppModel()
{
    if (!m_arePreferencesSaved) {
        savePreferences();
    }
    m_parts.systemEvents.setObserver({});
    m_parts.notificationService->setActionHandler({});
    m_parts.notificationService->setAuthorizationChangeHandler({});
    m_parts.soundService->setPlaybackStateHandler({});
    m_parts.launchAtLoginService->setChangeHandler({});
}

void AppModel::restore()
{
    m_preferences = m_parts.preferencesStore->load();

    std::optional<TimerSnapshot> restored;
    auto stored = m_parts.activeTimerPersistence->load();
    if (stored) {
        restored = *stored;
    } else {
        // Keeps what could not be read under another name; should that fail, the next save tries again.
        [[maybe_unused]] const auto cleared = m_parts.activeTimerPersistence->clear();
        raise(timerStateReset, std::string{timerStateResetDetail.in(language())});
    }
    if (const auto& error = m_parts.sessionStore->lastError(); error && !m_appMessage) {
        raise(historyUnreadable, error->errorDescription());
    }
    m_parts.notificationService->setLanguage(language());

    const bool wasRunning = restored && restored->runState == TimerRunState::running;
    m_engine.emplace(m_preferences.timerSettings, std::move(restored),
                     [this] { return m_parts.clock.timeZoneIdentifier(); });
    m_snapshot = m_engine->snapshot();
    m_remainingSeconds = m_snapshot.remainingSeconds(now());
    m_launchAtLoginStatus = m_parts.launchAtLoginService->status();
    m_startUpTask = m_parts.scheduler.after(
        Seconds::zero(), [this, wasRunning] { refreshSystemStateAndReconcile(wasRunning); });
}

void AppModel::connectParts()
{
    m_parts.notificationService->setActionHandler(
        [this](const TimerNotificationAction& action, const std::optional<Uuid>& sessionID) {
            handleNotificationAction(action, sessionID);
        });
    m_parts.notificationService->setAuthorizationChangeHandler([this] { authorizationMayHaveChanged(); });
    m_parts.soundService->setPlaybackStateHandler([this](bool playing) {
        if (std::exchange(m_isAlertSoundPlaying, playing) != playing) {
            Q_EMIT alertSoundPlayingChanged();
        }
        m_parts.capsule.refresh();
    });
}

void AppModel::observeSystemEvents()
{
    m_parts.launchAtLoginService->setChangeHandler(
        [this] { publishLaunchAtLoginStatus(m_parts.launchAtLoginService->status()); });
    SystemEvents::Observer observer;
    observer.willSleep = [this] {
        m_isAsleep = true;
        save(m_snapshot); // nothing waits to be written, unless an earlier write failed
    };
    observer.didWake = [this] {
        m_isAsleep = false;
        refreshCalendar();
        reconcile(true);
        tick();
    };
    observer.didBecomeActive = [this] {
        refreshCalendar();
        reconcile(m_isAsleep);
    };
    observer.clockDidChange = [this] {
        refreshCalendar();
        tick();
    };
    m_parts.systemEvents.setObserver(std::move(observer));
}

void AppModel::startTicker()
{
    // While a phase runs, one firing is to fall on its end, so that the end is noticed when it comes and the
    // digits change on the second.
    Seconds first = tickInterval;
    if (m_snapshot.runState == TimerRunState::running) {
        const Seconds untilFullSecond{std::fmod(m_snapshot.remainingSeconds(now()).count(), 1.0)};
        first = untilFullSecond > Seconds::zero() ? untilFullSecond : tickInterval;
    }
    m_ticker = m_parts.scheduler.every(first, tickInterval, [this] { tick(); });
}

void AppModel::alignTicker()
{
    // A firing is late by what the event loop was busy with, never early, unless the clock was adjusted.
    constexpr double rounding = 1e-5;
    constexpr double tolerance = 0.998;
    if (m_snapshot.runState != TimerRunState::running) {
        return;
    }
    const double untilFullSecond = std::fmod(m_remainingSeconds.count(), 1.0);
    if (untilFullSecond > rounding && untilFullSecond < tolerance) {
        startTicker();
    }
}

void AppModel::tick()
{
    publishRemainingSeconds();
    const bool hasEnded =
        m_snapshot.runState == TimerRunState::running && m_remainingSeconds <= Seconds::zero();
    if (hasEnded && !m_isAsleep) {
        reconcile(false);
    } else {
        alignTicker();
        m_parts.capsule.refresh();
    }
    Q_EMIT ticked();
}

void AppModel::refreshSystemStateAndReconcile(bool completedWhileAway)
{
    // Without waiting for the desktop's answer: what ended while the program was closed shall not be taken
    // for a phase that ended just now.
    reconcile(completedWhileAway);
    publishLaunchAtLoginStatus(m_parts.launchAtLoginService->status());
    readNotificationAuthorization([] {});
}

void AppModel::reconcile(bool completedWhileAway)
{
    run([completedWhileAway](TimerEngine& engine, Instant at) {
        return engine.reconcile(at, completedWhileAway);
    });
}

void AppModel::apply(const TimerTransition& transition, const TimerSnapshot& previous,
                     AskForPermission permission)
{
    const TimerSnapshot& next = transition.snapshot;
    if (next.runState != TimerRunState::running || next.sessionID != previous.sessionID) {
        m_parts.notificationService->cancel(previous.sessionID);
    }
    if (outdatesAnnouncement(transition, previous)) {
        m_parts.notificationService->withdrawAnnouncement();
    }
    publish(next);
    if (transition.finishedSession) {
        recordFinishedSession(*transition.finishedSession);
        announce(*transition.finishedSession);
    }
    save(next);
    if (next.runState == TimerRunState::running) {
        startTicker();
        scheduleNotification(permission);
    }
    m_parts.capsule.refresh();
}

void AppModel::save(const TimerSnapshot& snapshot)
{
    // Every activation of a window reconciles; what is on the disk already is not written again.
    if (m_savedSnapshot == snapshot) {
        return;
    }
    if (const auto saved = m_parts.activeTimerPersistence->save(snapshot)) {
        m_savedSnapshot = snapshot;
    } else {
        m_savedSnapshot.reset();
        raise(timerStateNotSaved, saved.error().description);
    }
}

void AppModel::run(const std::function<TimerTransition(TimerEngine&, Instant)>& operation,
                   AskForPermission permission)
{
    const TimerSnapshot previous = m_snapshot;
    apply(operation(*m_engine, now()), previous, permission);
}

void AppModel::recordFinishedSession(const FinishedSession& finished)
{
    const bool inserted = m_parts.sessionStore->insert(finished).has_value();
    const auto& error = m_parts.sessionStore->lastError();
    if (!inserted && error) {
        raise(recordNotSaved, error->errorDescription());
    }
    Q_EMIT sessionsChanged();
}

void AppModel::announce(const FinishedSession& finished)
{
    const auto headline = completionTitle(finished.phase, finished.outcome, language());
    if (isCompletion(finished.outcome)) {
        // Where the next phase started by itself there is nothing to decide, so no island.
        if (m_snapshot.runState == TimerRunState::ringing) {
            m_parts.capsule.presentCompletion({*headline});
        } else {
            m_parts.capsule.clearMorphState();
        }
        if (m_preferences.playCompletionSound) {
            m_parts.soundService->play(m_preferences.timerSettings.alertIntensity, completionSoundName);
        }
    } else if (headline) {
        m_parts.capsule.presentCompletion({*headline});
    } else if (finished.outcome == SessionOutcome::switchedEarly) {
        m_parts.capsule.clearMorphState();
    }
}

void AppModel::publish(const TimerSnapshot& snapshot)
{
    const bool changed = m_snapshot != snapshot;
    m_snapshot = snapshot;
    publishRemainingSeconds();
    if (changed) {
        Q_EMIT snapshotChanged();
    }
}

void AppModel::publishRemainingSeconds()
{
    const Seconds remaining = m_snapshot.remainingSeconds(now());
    if (std::exchange(m_remainingSeconds, remaining) != remaining) {
        Q_EMIT remainingSecondsChanged();
    }
}

void AppModel::publishLaunchAtLoginStatus(LaunchAtLoginStatus status)
{
    if (std::exchange(m_launchAtLoginStatus, status) != status) {
        Q_EMIT launchAtLoginStatusChanged();
    }
}

void AppModel::raise(const BilingualText& messageTitle, const std::string& detail)
{
    m_appMessage = AppMessage{Uuid::random(), std::string{messageTitle.in(language())}, detail};
    Q_EMIT appMessageChanged();
}

void AppModel::clearAppMessage()
{
    if (m_appMessage) {
        m_appMessage.reset();
        Q_EMIT appMessageChanged();
    }
}

void AppModel::refreshCalendar()
{
    if (const std::string zone = m_parts.clock.timeZoneIdentifier();
        zone != m_calendar.timeZoneIdentifier()) {
        m_calendar = Calendar(zone, m_parts.userLocale);
        Q_EMIT ticked();
    }
}

} // namespace brevlin
