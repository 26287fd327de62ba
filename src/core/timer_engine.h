#pragma once

#include "core/finished_session.h"
#include "core/timer_settings.h"
#include "core/timer_snapshot.h"

#include <functional>
#include <optional>
#include <string>

namespace brevlin {

/// The timer's state machine. Every operation takes the instant of the call, changes the state and tells what
/// became of it; an operation that does not apply to the current state changes nothing. A phase whose end has
/// come is completed first by most operations, which then do nothing else.
class TimerEngine final
{
public:
    /// Gives the IANA name of the system's current time zone.
    using TimeZoneSource = std::function<std::string()>;

    /// Continues from the snapshot as it stands, or from an idle focus phase where there is none.
    TimerEngine(const TimerSettings& settings, std::optional<TimerSnapshot> snapshot,
                TimeZoneSource timeZone);

    const TimerSnapshot& snapshot() const { return m_state; }
    const TimerSettings& settings() const { return m_settings; }

    /// A phase in progress keeps its length; only an idle one takes the new duration.
    TimerTransition updateSettings(const TimerSettings& settings);
    /// Chooses the phase while idle; for callers that let the user choose, which no screen does.
    TimerTransition selectPhase(TimerPhase phase);
    TimerTransition start(Instant now, const std::optional<std::string>& intention = std::nullopt);
    TimerTransition pause(Instant now);
    TimerTransition resume(Instant now);
    /// Lengthens the running or paused phase. Anything but a finite positive length changes nothing.
    TimerTransition addTime(Seconds length, Instant now);
    /// Says what the running or paused phase is for, or that it is for nothing.
    TimerTransition setIntention(const std::optional<std::string>& intention);
    /// Makes a pause of this length of time that the running or paused phase has counted. Anything but a
    /// finite positive length changes nothing.
    TimerTransition countAsPause(Seconds length, Instant now);
    /// Abandons the phase as skipped and prepares the other kind, without starting it as switchAndStart does;
    /// no screen offers it.
    TimerTransition skip(Instant now);
    /// Abandons the phase and prepares the same one again.
    TimerTransition reset(Instant now);
    /// Ends the phase now and prepares the other kind.
    TimerTransition endEarly(Instant now);
    /// Ends the phase now and starts the other kind at once.
    TimerTransition switchAndStart(Instant now);
    /// Starts the prepared phase, after completing a due one.
    TimerTransition advance(Instant now);
    /// Replaces the prepared phase by the other kind while ringing.
    TimerTransition skipPendingPhase(Instant now);
    /// Completes a due phase.
    TimerTransition reconcile(Instant now, bool completedWhileAway);

private:
    void prepareForPhase(TimerPhase phase, TimerRunState runState);
    void beginCurrentPhase(Instant now, const std::optional<std::string>& intention);
    Seconds totalPauseDuration(Instant now) const;
    std::int64_t cycleIndex(TimerPhase phase) const;
    FinishedSession makeFinishedSession(SessionOutcome outcome, Instant endedAt,
                                        std::optional<Instant> scheduledEndAt) const;
    std::optional<FinishedSession> finishIfNeeded(Instant now, bool completedWhileAway);
    TimerTransition abandon(SessionOutcome outcome, TimerPhase next, TimerRunState runState, Instant now);
    TimerTransition unchanged() const { return {m_state, std::nullopt}; }

    TimerSettings m_settings;
    TimerSnapshot m_state;
    TimeZoneSource m_timeZone;
};

/// A fresh timer: an idle focus phase of the given length.
TimerSnapshot freshSnapshot(const TimerSettings& settings);

/// The text without white space and line breaks (Unicode's White_Space) at both ends; nothing when none is
/// left.
std::optional<std::string> normalizedIntention(const std::optional<std::string>& intention);

} // namespace brevlin
