#include "core/timer_engine.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

constexpr TimerPhase otherKind(TimerPhase phase)
{
    return phase == TimerPhase::focus ? TimerPhase::shortBreak : TimerPhase::focus;
}

// An undefined number counts as 0.
Seconds atLeastZero(Seconds value)
{
    return value > Seconds::zero() ? value : Seconds::zero();
}

} // namespace

TimerEngine::TimerEngine(const TimerSettings& settings, std::optional<TimerSnapshot> snapshot,
                         TimeZoneSource timeZone)
    : m_settings(settings)
    , m_state(snapshot ? *std::move(snapshot) : freshSnapshot(settings))
    , m_timeZone(std::move(timeZone))
{}

TimerTransition TimerEngine::updateSettings(const TimerSettings& settings)
{
    m_settings = settings;
    if (m_state.runState == TimerRunState::idle) {
        m_state.plannedDuration = m_settings.duration(m_state.phase);
    }
    return unchanged();
}

TimerTransition TimerEngine::selectPhase(TimerPhase phase)
{
    if (m_state.runState == TimerRunState::idle) {
        m_state.phase = phase;
        m_state.plannedDuration = m_settings.duration(phase);
    }
    return unchanged();
}

TimerTransition TimerEngine::start(Instant now, const std::optional<std::string>& intention)
{
    if (m_state.runState == TimerRunState::idle) {
        beginCurrentPhase(now, intention);
    }
    return unchanged();
}

TimerTransition TimerEngine::pause(Instant now)
{
    if (auto finished = finishIfNeeded(now, false)) {
        return {m_state, std::move(finished)};
    }
    if (m_state.runState == TimerRunState::running) {
        m_state.pausedRemainingSeconds = m_state.remainingSeconds(now);
        m_state.pausedAt = now;
        m_state.expectedEndAt.reset();
        m_state.runState = TimerRunState::paused;
        ++m_state.interruptionCount;
    }
    return unchanged();
}

TimerTransition TimerEngine::resume(Instant now)
{
    if (m_state.runState == TimerRunState::paused && m_state.pausedRemainingSeconds) {
        m_state.accumulatedPauseSeconds = totalPauseDuration(now);
        m_state.expectedEndAt = now + atLeastZero(*m_state.pausedRemainingSeconds);
        m_state.pausedAt.reset();
        m_state.pausedRemainingSeconds.reset();
        m_state.runState = TimerRunState::running;
    }
    return unchanged();
}

TimerTransition TimerEngine::addTime(Seconds length, Instant now)
{
    if (!std::isfinite(length.count()) || length <= Seconds::zero()) {
        return unchanged();
    }
    if (auto finished = finishIfNeeded(now, false)) {
        return {m_state, std::move(finished)};
    }
    if (m_state.runState == TimerRunState::running && m_state.expectedEndAt) {
        *m_state.expectedEndAt += length;
        m_state.plannedDuration += length;
    } else if (m_state.runState == TimerRunState::paused) {
        const Seconds remaining = m_state.pausedRemainingSeconds.value_or(Seconds::zero());
        m_state.pausedRemainingSeconds = length + atLeastZero(remaining);
        m_state.plannedDuration += length;
    }
    return unchanged();
}

TimerTransition TimerEngine::setIntention(const std::optional<std::string>& intention)
{
    if (m_state.isActive()) {
        m_state.intention = normalizedIntention(intention);
    }
    return unchanged();
}

TimerTransition TimerEngine::countAsPause(Seconds length, Instant now)
{
    if (!std::isfinite(length.count()) || length <= Seconds::zero()) {
        return unchanged();
    }
    if (auto finished = finishIfNeeded(now, false)) {
        return {m_state, std::move(finished)};
    }
    if (m_state.runState == TimerRunState::running && m_state.expectedEndAt) {
        *m_state.expectedEndAt += length;
    } else if (m_state.runState == TimerRunState::paused) {
        m_state.pausedRemainingSeconds =
            atLeastZero(m_state.pausedRemainingSeconds.value_or(Seconds::zero())) + length;
    } else {
        return unchanged();
    }
    m_state.accumulatedPauseSeconds += length;
    ++m_state.interruptionCount;
    return unchanged();
}

TimerTransition TimerEngine::skip(Instant now)
{
    if (auto finished = finishIfNeeded(now, false)) {
        return {m_state, std::move(finished)};
    }
    return abandon(SessionOutcome::skipped, otherKind(m_state.phase), TimerRunState::ringing, now);
}

TimerTransition TimerEngine::reset(Instant now)
{
    if (auto finished = finishIfNeeded(now, false)) {
        return {m_state, std::move(finished)};
    }
    return abandon(SessionOutcome::reset, m_state.phase, TimerRunState::idle, now);
}

TimerTransition TimerEngine::endEarly(Instant now)
{
    if (auto finished = finishIfNeeded(now, false)) {
        return {m_state, std::move(finished)};
    }
    if (!m_state.isActive()) {
        return unchanged();
    }
    return abandon(SessionOutcome::endedEarly, otherKind(m_state.phase), TimerRunState::ringing, now);
}

TimerTransition TimerEngine::switchAndStart(Instant now)
{
    if (auto finished = finishIfNeeded(now, false)) {
        if (m_state.runState == TimerRunState::ringing) {
            beginCurrentPhase(now, std::nullopt);
        }
        return {m_state, std::move(finished)};
    }
    if (!m_state.isActive()) {
        return unchanged();
    }
    TimerTransition transition =
        abandon(SessionOutcome::switchedEarly, otherKind(m_state.phase), TimerRunState::idle, now);
    beginCurrentPhase(now, std::nullopt);
    transition.snapshot = m_state;
    return transition;
}

TimerTransition TimerEngine::advance(Instant now)
{
    auto finished = finishIfNeeded(now, false);
    if (m_state.runState == TimerRunState::ringing) {
        beginCurrentPhase(now, std::nullopt);
    }
    return {m_state, std::move(finished)};
}

TimerTransition TimerEngine::skipPendingPhase(Instant /*now*/)
{
    if (m_state.runState == TimerRunState::ringing) {
        prepareForPhase(otherKind(m_state.phase), TimerRunState::ringing);
    }
    return unchanged();
}

TimerTransition TimerEngine::reconcile(Instant now, bool completedWhileAway)
{
    auto finished = finishIfNeeded(now, completedWhileAway);
    return {m_state, std::move(finished)};
}

void TimerEngine::prepareForPhase(TimerPhase phase, TimerRunState runState)
{
    TimerSnapshot prepared;
    prepared.phase = phase;
    prepared.runState = runState;
    prepared.plannedDuration = m_settings.duration(phase);
    prepared.completedFocusCount = m_state.completedFocusCount;
    m_state = std::move(prepared);
}

void TimerEngine::beginCurrentPhase(Instant now, const std::optional<std::string>& intention)
{
    TimerSnapshot running;
    running.phase = m_state.phase;
    running.runState = TimerRunState::running;
    running.sessionID = Uuid::random();
    running.intention = normalizedIntention(intention);
    running.startedAt = now;
    running.expectedEndAt = now + m_state.plannedDuration;
    running.plannedDuration = m_state.plannedDuration;
    running.completedFocusCount = m_state.completedFocusCount;
    running.timeZoneIdentifierAtStart = m_timeZone();
    m_state = std::move(running);
}

Seconds TimerEngine::totalPauseDuration(Instant now) const
{
    if (m_state.runState == TimerRunState::paused && m_state.pausedAt) {
        return m_state.accumulatedPauseSeconds + atLeastZero(now - *m_state.pausedAt);
    }
    return m_state.accumulatedPauseSeconds;
}

std::int64_t TimerEngine::cycleIndex(TimerPhase phase) const
{
    const std::int64_t place = m_state.completedFocusCount % m_settings.focusSessionsPerLongBreak;
    if (phase == TimerPhase::focus) {
        return place + 1;
    }
    if (place == 0 && m_state.completedFocusCount >= 1) {
        return m_settings.focusSessionsPerLongBreak;
    }
    return std::max<std::int64_t>(place, 1);
}

FinishedSession TimerEngine::makeFinishedSession(SessionOutcome outcome, Instant endedAt,
                                                 std::optional<Instant> scheduledEndAt) const
{
    FinishedSession session;
    session.id = m_state.sessionID ? *m_state.sessionID : Uuid::random();
    session.phase = m_state.phase;
    session.outcome = outcome;
    session.startedAt = m_state.startedAt.value_or(endedAt);
    session.scheduledEndAt = scheduledEndAt ? scheduledEndAt : m_state.expectedEndAt;
    session.endedAt = endedAt;
    session.plannedDuration = atLeastZero(m_state.plannedDuration);
    session.pauseDuration = atLeastZero(totalPauseDuration(endedAt));
    session.effectiveDuration =
        isCompletion(outcome) ? session.plannedDuration
                              : std::min(atLeastZero(endedAt - session.startedAt - session.pauseDuration),
                                         session.plannedDuration);
    session.cycleIndex = std::max<std::int64_t>(cycleIndex(m_state.phase), 1);
    session.interruptionCount = std::max<std::int64_t>(m_state.interruptionCount, 0);
    session.intention = m_state.intention;
    session.completedWhileAway = outcome == SessionOutcome::completedWhileAway;
    session.timeZoneIdentifierAtStart =
        m_state.timeZoneIdentifierAtStart ? *m_state.timeZoneIdentifierAtStart : m_timeZone();
    return session;
}

std::optional<FinishedSession> TimerEngine::finishIfNeeded(Instant now, bool completedWhileAway)
{
    if (!m_state.isDue(now)) {
        return std::nullopt;
    }
    const Instant scheduledEnd = *m_state.expectedEndAt;
    FinishedSession finished = makeFinishedSession(completedWhileAway ? SessionOutcome::completedWhileAway
                                                                      : SessionOutcome::completed,
                                                   scheduledEnd, scheduledEnd);
    TimerPhase next = TimerPhase::focus;
    bool startsByItself = m_settings.autoStartFocus;
    if (m_state.phase == TimerPhase::focus) {
        ++m_state.completedFocusCount;
        const bool cycleIsComplete = m_state.completedFocusCount >= 1 &&
                                     m_state.completedFocusCount % m_settings.focusSessionsPerLongBreak == 0;
        next = cycleIsComplete ? TimerPhase::longBreak : TimerPhase::shortBreak;
        startsByItself = m_settings.autoStartBreaks;
    }
    prepareForPhase(next, TimerRunState::ringing);
    if (startsByItself) {
        // From the instant at which the end was noticed: a computer that slept for hours owes the user a
        // whole break.
        beginCurrentPhase(now, std::nullopt);
    }
    return finished;
}

// What skip, reset, endEarly and switchAndStart share. A ringing phase has nothing to record: it only becomes
// idle.
TimerTransition TimerEngine::abandon(SessionOutcome outcome, TimerPhase next, TimerRunState runState,
                                     Instant now)
{
    if (m_state.isActive()) {
        FinishedSession finished = makeFinishedSession(outcome, now, std::nullopt);
        prepareForPhase(next, runState);
        return {m_state, std::move(finished)};
    }
    m_state.runState = TimerRunState::idle;
    return unchanged();
}

TimerSnapshot freshSnapshot(const TimerSettings& settings)
{
    TimerSnapshot snapshot;
    snapshot.plannedDuration = atLeastZero(settings.focusDuration);
    return snapshot;
}

std::optional<std::string> normalizedIntention(const std::optional<std::string>& intention)
{
    if (!intention) {
        return std::nullopt;
    }
    const icu::UnicodeString text = icu::UnicodeString::fromUTF8(*intention);
    int32_t begin = 0;
    int32_t end = text.length();
    // Every white-space character is a single UTF-16 unit.
    while (begin < end && u_isUWhiteSpace(text[begin])) {
        ++begin;
    }
    while (end > begin && u_isUWhiteSpace(text[end - 1])) {
        --end;
    }
    if (begin == end) {
        return std::nullopt;
    }
    std::string result;
    text.tempSubStringBetween(begin, end).toUTF8String(result);
    return result;
}

} // namespace brevlin
