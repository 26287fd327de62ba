#include "app/app_model.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

constexpr const char* completionSoundName = "Glass";

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
    , m_launchAtLogin(std::move(m_parts.launchAtLoginService), m_messages)
    , m_announcer(std::move(m_parts.notificationService), m_parts.clock, m_messages)
    , m_shortcuts(m_parts.globalShortcuts)
    , m_undoOffer(m_parts.scheduler)
    , m_historyEditor(*m_parts.sessionStore, *m_parts.sessionDetailsStore, m_undoOffer)
    , m_historyTransfer(std::move(m_parts.transferParts), m_parts.clock, *m_parts.sessionStore,
                        *m_parts.sessionDetailsStore, m_historyEditor)
    , m_absences(*m_parts.sessionDetailsStore, m_parts.clock,
                 [this](const Uuid& id) { return sessionOf(id); })
    , m_focusQuiet(std::move(m_parts.quietParts), m_parts.scheduler)
    , m_calendar(m_parts.clock.timeZone(), m_parts.userLocale)
{
    restore();
    m_hooks = std::make_unique<HookCaller>(*this, std::move(m_parts.hookParts));
    connectParts();
    startTicker();
    observeSystemEvents();
}

AppModel::~AppModel()
{
    retryWrites();
    m_parts.systemEvents.setObserver({});
    m_parts.soundService->setPlaybackStateHandler({});
}

void AppModel::connectParts()
{
    connect(&m_announcer, &PhaseAnnouncer::actionChosen, this, &AppModel::handleNotificationAction);
    connect(&m_shortcuts, &Shortcuts::activated, this, &AppModel::perform);
    connect(&m_shortcuts, &Shortcuts::bound, this, [this] {
        changeAddedPreferences(
            [](AddedPreferences& preferences) { preferences.hasBoundShortcutsOnce = true; });
    });
    m_parts.soundService->setPlaybackStateHandler([this](bool playing) {
        if (std::exchange(m_isAlertSoundPlaying, playing) != playing) {
            Q_EMIT alertSoundPlayingChanged();
        }
    });
}

void AppModel::observeSystemEvents()
{
    SystemEvents::Observer observer;
    observer.willSleep = [this] {
        m_isAsleep = true;
        m_absences.setAsleep(true);
        retryWrites();
    };
    observer.didWake = [this] {
        m_isAsleep = false;
        refreshCalendar();
        retryWrites();
        reconcile(true);
        m_absences.setAsleep(false);
        tick();
    };
    observer.didBecomeActive = [this] {
        refreshCalendar();
        retryWrites();
        reconcile(m_isAsleep);
    };
    observer.clockDidChange = [this] {
        refreshCalendar();
        tick();
    };
    observer.timeZoneDidChange = [this] {
        refreshCalendar();
    };
    m_parts.systemEvents.setObserver(std::move(observer));
}

// While nothing counts down, all that a tick may bring is another day or another zone.
Seconds AppModel::tickInterval() const
{
    constexpr Seconds everySecond{1.0};
    constexpr Seconds whileIdle{10.0};
    return m_snapshot.runState == TimerRunState::idle ? whileIdle : everySecond;
}

// While a phase runs, one firing is to fall on its end, so that the end is noticed when it comes and the
// digits change on the second. In an idle timer one falls on midnight.
Seconds AppModel::untilNextTick() const
{
    const Seconds interval = tickInterval();
    switch (m_snapshot.runState) {
    case TimerRunState::running: {
        const Seconds untilFullSecond{std::fmod(m_snapshot.remainingSeconds(now()).count(), 1.0)};
        return untilFullSecond > Seconds::zero() ? untilFullSecond : interval;
    }
    case TimerRunState::idle: {
        const Seconds untilMidnight = m_calendar.interval(CalendarUnit::day, now()).end - now();
        return untilMidnight > Seconds::zero() ? std::min(untilMidnight, interval) : interval;
    }
    default:
        return interval;
    }
}

void AppModel::startTicker()
{
    m_ticker = m_parts.scheduler.every(untilNextTick(), tickInterval(), [this] { tick(); });
}

void AppModel::alignTicker()
{
    // A firing is late by what the event loop was busy with, never early, unless the clock was adjusted.
    constexpr double rounding = 1e-5;
    constexpr double tolerance = 0.9995;
    const double untilFullSecond = std::fmod(m_remainingSeconds.count(), 1.0);
    const bool isAstray = untilFullSecond > rounding && untilFullSecond < tolerance;
    const bool isForMidnight = m_snapshot.runState == TimerRunState::idle && untilNextTick() < tickInterval();
    if ((m_snapshot.runState == TimerRunState::running && isAstray) || isForMidnight) {
        startTicker();
    }
}

void AppModel::tick()
{
    const bool hasEnded = m_snapshot.runState == TimerRunState::running &&
                          m_snapshot.remainingSeconds(now()) <= Seconds::zero();
    if (hasEnded) {
        // Whoever announced the sleep may never tell of the waking. The time that is left is told with what
        // comes next: nobody could see the last zero.
        reconcile(m_isAsleep);
    } else {
        publishRemainingSeconds();
        alignTicker();
    }
    Q_EMIT ticked();
}

void AppModel::refreshSystemStateAndReconcile(bool completedWhileAway)
{
    // Without waiting for the desktop's answer: what ended while the program was closed shall not be taken
    // for a phase that ended just now.
    reconcile(completedWhileAway);
    m_launchAtLogin.refresh();
    m_announcer.readNotificationAuthorization();
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
        m_announcer.cancel(previous.sessionID);
    }
    if (outdatesAnnouncement(transition, previous)) {
        m_announcer.withdrawAnnouncement();
        m_focusQuiet.announcementIsGone();
    }
    recordPause(transition, previous);
    publish(next);
    if (transition.finishedSession) {
        const FinishedSession& finished = *transition.finishedSession;
        recordFinishedSession(finished);
        recordDecided(finished);
        Q_EMIT phaseEnded(finished);
        if (isCompletion(finished.outcome) && m_preferences.playCompletionSound) {
            m_parts.soundService->play(m_preferences.timerSettings.alertIntensity, completionSoundName);
        }
    }
    save(next);
    m_absences.follow(next);
    m_focusQuiet.follow(next);
    const bool wasIdle = previous.runState == TimerRunState::idle;
    if (next.runState == TimerRunState::running || wasIdle != (next.runState == TimerRunState::idle)) {
        startTicker();
    }
    if (next.runState == TimerRunState::running) {
        m_announcer.schedule(permission);
    }
    Q_EMIT transitionApplied();
}

void AppModel::run(const TimerOperation& operation, AskForPermission permission)
{
    const TimerSnapshot previous = m_snapshot;
    TimerTransition transition = operation(*m_engine, now());
    const TimerSnapshot& next = transition.snapshot;
    const bool beginsFocus = next.runState == TimerRunState::running && next.phase == TimerPhase::focus &&
                             next.sessionID != previous.sessionID;
    if (beginsFocus && !next.intention && !m_preparedIntention.empty()) {
        transition.snapshot = m_engine->setIntention(std::exchange(m_preparedIntention, {})).snapshot;
    }
    apply(transition, previous, permission);
}

void AppModel::handleNotificationAction(const TimerNotificationAction& action,
                                        const std::optional<Uuid>& sessionID)
{
    // A ringing phase has no run of its own, so that the buttons of the phase that just ended are honoured.
    if (sessionID && m_snapshot.sessionID && *m_snapshot.sessionID != *sessionID) {
        return;
    }
    using Kind = TimerNotificationAction::Kind;
    switch (action.kind) {
    case Kind::opened:
        m_parts.soundService->stop();
        activateMainWindow();
        break;
    case Kind::startNextPhase:
        advance();
        break;
    case Kind::stopAlert:
        m_parts.soundService->stop();
        break;
    case Kind::dismissed:
    case Kind::unknown:
        break;
    }
}

void AppModel::publish(const TimerSnapshot& snapshot)
{
    const bool changed = m_snapshot != snapshot;
    m_snapshot = snapshot;
    m_announcer.follow(snapshot, m_preferences.timerSettings.alertIntensity);
    publishRemainingSeconds();
    if (changed) {
        Q_EMIT snapshotChanged();
    }
}

void AppModel::publishRemainingSeconds()
{
    Seconds remaining = m_snapshot.remainingSeconds(now());
    if (m_snapshot.runState == TimerRunState::running) {
        // A clock that was set back brings no more time than the phase has.
        remaining = std::min(remaining, std::max(m_snapshot.plannedDuration, Seconds::zero()));
    }
    if (std::exchange(m_remainingSeconds, remaining) != remaining) {
        Q_EMIT remainingSecondsChanged();
    }
}

void AppModel::refreshCalendar()
{
    if (const TimeZone zone = m_parts.clock.timeZone(); zone != m_calendar.timeZone()) {
        m_calendar = Calendar(zone, m_parts.userLocale);
        Q_EMIT ticked();
    }
}

} // namespace brevlin
