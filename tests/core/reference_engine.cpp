#include "core/reference_engine.h"

#include <array>
#include <cmath>
#include <map>

namespace brevlin::test {

namespace {

enum class Effect {
    nothing,
    begin,        // start the current phase, with the intention
    beginWithout, // start the current phase
    pause,
    resume,
    lengthen,
    becomeIdle,
    skipToRinging,  // record skipped, prepare the other kind
    resetToIdle,    // record reset, prepare the same phase
    endToRinging,   // record endedEarly, prepare the other kind
    switchAndBegin, // record switchedEarly, prepare the other kind, start it
    otherPendingPhase,
    choosePhase,
    takeDuration,
};

enum class FinishCheck { none, first, firstAndGoOn, away };

struct Row
{
    FinishCheck check;
    std::array<Effect, 4> byState; // idle, running, paused, ringing
};

const std::map<Operation, Row>& table()
{
    using enum Effect;
    static const std::map<Operation, Row> rows{
        {Operation::start, {FinishCheck::none, {begin, nothing, nothing, nothing}}},
        {Operation::pause, {FinishCheck::first, {nothing, pause, nothing, nothing}}},
        {Operation::resume, {FinishCheck::none, {nothing, nothing, resume, nothing}}},
        {Operation::addTime, {FinishCheck::first, {nothing, lengthen, lengthen, nothing}}},
        {Operation::skip, {FinishCheck::first, {nothing, skipToRinging, skipToRinging, becomeIdle}}},
        {Operation::reset, {FinishCheck::first, {nothing, resetToIdle, resetToIdle, becomeIdle}}},
        {Operation::endEarly, {FinishCheck::first, {nothing, endToRinging, endToRinging, nothing}}},
        {Operation::switchAndStart,
         {FinishCheck::firstAndGoOn, {nothing, switchAndBegin, switchAndBegin, nothing}}},
        {Operation::advance, {FinishCheck::firstAndGoOn, {nothing, nothing, nothing, beginWithout}}},
        {Operation::skipPendingPhase, {FinishCheck::none, {nothing, nothing, nothing, otherPendingPhase}}},
        {Operation::selectPhase, {FinishCheck::none, {choosePhase, nothing, nothing, nothing}}},
        {Operation::updateSettings, {FinishCheck::none, {takeDuration, nothing, nothing, nothing}}},
        {Operation::reconcile, {FinishCheck::first, {nothing, nothing, nothing, nothing}}},
        {Operation::reconcileAway, {FinishCheck::away, {nothing, nothing, nothing, nothing}}},
    };
    return rows;
}

double larger(double value, double floor)
{
    return std::isnan(value) || value < floor ? floor : value;
}

double planned(const TimerSettings& settings, TimerPhase phase)
{
    const std::array lengths{settings.focusDuration, settings.shortBreakDuration, settings.longBreakDuration};
    return lengths.at(static_cast<std::size_t>(phase)).count();
}

TimerPhase other(TimerPhase phase)
{
    return phase == TimerPhase::focus ? TimerPhase::shortBreak : TimerPhase::focus;
}

} // namespace

ReferenceEngine::ReferenceEngine(const TimerSettings& settings, const TimerSnapshot& snapshot,
                                 std::string timeZone)
    : m_settings(settings), m_state(snapshot), m_timeZone(std::move(timeZone))
{}

void ReferenceEngine::prepare(TimerPhase phase, TimerRunState state)
{
    m_state.phase = phase;
    m_state.runState = state;
    m_state.sessionID.reset();
    m_state.intention.reset();
    m_state.startedAt.reset();
    m_state.expectedEndAt.reset();
    m_state.pausedAt.reset();
    m_state.pausedRemainingSeconds.reset();
    m_state.timeZoneIdentifierAtStart.reset();
    m_state.plannedDuration = Seconds{planned(m_settings, phase)};
    m_state.accumulatedPauseSeconds = Seconds{0.0};
    m_state.interruptionCount = 0;
}

void ReferenceEngine::begin(const Arguments& arguments, bool takesIntention)
{
    m_state.runState = TimerRunState::running;
    m_state.sessionID = Uuid{};
    m_state.intention = takesIntention ? arguments.intention : std::nullopt;
    m_state.startedAt = arguments.now;
    m_state.expectedEndAt = arguments.now + m_state.plannedDuration;
    m_state.pausedAt.reset();
    m_state.pausedRemainingSeconds.reset();
    m_state.accumulatedPauseSeconds = Seconds{0.0};
    m_state.interruptionCount = 0;
    m_state.timeZoneIdentifierAtStart = m_timeZone;
}

FinishedSession ReferenceEngine::session(SessionOutcome outcome, Instant endedAt,
                                         std::optional<Instant> scheduledEndAt) const
{
    double pause = m_state.accumulatedPauseSeconds.count();
    if (m_state.runState == TimerRunState::paused && m_state.pausedAt) {
        pause += larger((endedAt - *m_state.pausedAt).count(), 0.0);
    }
    const std::int64_t n = m_settings.focusSessionsPerLongBreak;
    const std::int64_t c = m_state.completedFocusCount;
    std::int64_t index = c % n + 1;
    if (m_state.phase != TimerPhase::focus) {
        index = c % n == 0 && c >= 1 ? n : std::max<std::int64_t>(c % n, 1);
    }
    FinishedSession result;
    result.phase = m_state.phase;
    result.outcome = outcome;
    result.startedAt = m_state.startedAt ? *m_state.startedAt : endedAt;
    result.scheduledEndAt = scheduledEndAt ? scheduledEndAt : m_state.expectedEndAt;
    result.endedAt = endedAt;
    result.pauseDuration = Seconds{larger(pause, 0.0)};
    result.plannedDuration = Seconds{larger(m_state.plannedDuration.count(), 0.0)};
    result.effectiveDuration = result.plannedDuration;
    if (outcome != SessionOutcome::completed && outcome != SessionOutcome::completedWhileAway) {
        const double done = (endedAt - result.startedAt - result.pauseDuration).count();
        result.effectiveDuration = std::min(Seconds{larger(done, 0.0)}, result.plannedDuration);
    }
    result.cycleIndex = std::max<std::int64_t>(index, 1);
    result.interruptionCount = std::max<std::int64_t>(m_state.interruptionCount, 0);
    result.intention = m_state.intention;
    result.completedWhileAway = outcome == SessionOutcome::completedWhileAway;
    result.timeZoneIdentifierAtStart = m_state.timeZoneIdentifierAtStart.value_or(m_timeZone);
    return result;
}

std::optional<FinishedSession> ReferenceEngine::finish(Instant now, bool away)
{
    const bool due =
        m_state.runState == TimerRunState::running && m_state.expectedEndAt && *m_state.expectedEndAt <= now;
    if (!due) {
        return std::nullopt;
    }
    const auto outcome = away ? SessionOutcome::completedWhileAway : SessionOutcome::completed;
    const FinishedSession result = session(outcome, *m_state.expectedEndAt, m_state.expectedEndAt);
    bool autoStart = m_settings.autoStartFocus;
    TimerPhase next = TimerPhase::focus;
    if (m_state.phase == TimerPhase::focus) {
        const std::int64_t count = ++m_state.completedFocusCount;
        autoStart = m_settings.autoStartBreaks;
        next = count >= 1 && count % m_settings.focusSessionsPerLongBreak == 0 ? TimerPhase::longBreak
                                                                               : TimerPhase::shortBreak;
    }
    prepare(next, TimerRunState::ringing);
    if (autoStart) {
        begin({now, std::nullopt, {}, {}, {}}, false);
    }
    return result;
}

TimerTransition ReferenceEngine::perform(Operation operation, const Arguments& arguments)
{
    const Row& row = table().at(operation);
    if (operation == Operation::addTime &&
        !(arguments.length.count() > 0 && std::isfinite(arguments.length.count()))) {
        return {m_state, std::nullopt};
    }
    std::optional<FinishedSession> finished;
    if (row.check != FinishCheck::none) {
        finished = finish(arguments.now, row.check == FinishCheck::away);
    }
    if (finished && row.check == FinishCheck::firstAndGoOn && m_state.runState == TimerRunState::ringing) {
        begin(arguments, false);
    }
    if (finished) {
        return {m_state, finished};
    }
    if (operation == Operation::updateSettings) {
        m_settings = arguments.settings;
    }
    const TimerPhase phase = m_state.phase;
    switch (row.byState.at(static_cast<std::size_t>(m_state.runState))) {
    case Effect::nothing:
        break;
    case Effect::begin:
        begin(arguments, true);
        break;
    case Effect::beginWithout:
        begin(arguments, false);
        break;
    case Effect::pause:
        m_state.pausedRemainingSeconds = m_state.remainingSeconds(arguments.now);
        m_state.pausedAt = arguments.now;
        m_state.expectedEndAt.reset();
        m_state.runState = TimerRunState::paused;
        m_state.interruptionCount += 1;
        break;
    case Effect::resume:
        if (m_state.pausedRemainingSeconds) {
            if (m_state.pausedAt) {
                m_state.accumulatedPauseSeconds +=
                    Seconds{larger((arguments.now - *m_state.pausedAt).count(), 0.0)};
            }
            m_state.expectedEndAt =
                arguments.now + Seconds{larger(m_state.pausedRemainingSeconds->count(), 0.0)};
            m_state.pausedAt.reset();
            m_state.pausedRemainingSeconds.reset();
            m_state.runState = TimerRunState::running;
        }
        break;
    case Effect::lengthen:
        if (m_state.runState == TimerRunState::paused) {
            const double old = m_state.pausedRemainingSeconds ? m_state.pausedRemainingSeconds->count() : 0.0;
            m_state.pausedRemainingSeconds = Seconds{arguments.length.count() + larger(old, 0.0)};
            m_state.plannedDuration += arguments.length;
        } else if (m_state.expectedEndAt) {
            m_state.expectedEndAt = *m_state.expectedEndAt + arguments.length;
            m_state.plannedDuration += arguments.length;
        }
        break;
    case Effect::becomeIdle:
        m_state.runState = TimerRunState::idle;
        break;
    case Effect::skipToRinging:
        finished = session(SessionOutcome::skipped, arguments.now, std::nullopt);
        prepare(other(phase), TimerRunState::ringing);
        break;
    case Effect::resetToIdle:
        finished = session(SessionOutcome::reset, arguments.now, std::nullopt);
        prepare(phase, TimerRunState::idle);
        break;
    case Effect::endToRinging:
        finished = session(SessionOutcome::endedEarly, arguments.now, std::nullopt);
        prepare(other(phase), TimerRunState::ringing);
        break;
    case Effect::switchAndBegin:
        finished = session(SessionOutcome::switchedEarly, arguments.now, std::nullopt);
        prepare(other(phase), TimerRunState::idle);
        begin(arguments, false);
        break;
    case Effect::otherPendingPhase:
        prepare(other(phase), TimerRunState::ringing);
        break;
    case Effect::choosePhase:
        m_state.phase = arguments.phase;
        m_state.plannedDuration = Seconds{planned(m_settings, arguments.phase)};
        break;
    case Effect::takeDuration:
        m_state.plannedDuration = Seconds{planned(m_settings, phase)};
        break;
    }
    return {m_state, finished};
}

} // namespace brevlin::test
