#pragma once

#include "core/instant.h"
#include "core/timer_vocabulary.h"
#include "core/uuid.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brevlin {

/// The complete state of the timer at one moment. Instants are absolute, so that a stored snapshot tells the
/// truth after any stretch of sleep or absence.
struct TimerSnapshot
{
    TimerPhase phase = TimerPhase::focus; ///< while ringing, the prepared next phase
    TimerRunState runState = TimerRunState::idle;
    std::optional<Uuid> sessionID;        ///< the phase run in progress; absent while idle or ringing
    std::optional<std::string> intention; ///< trimmed, never empty when present
    std::optional<Instant> startedAt;
    std::optional<Instant> expectedEndAt;                 ///< only while running
    std::optional<Instant> pausedAt;                      ///< only while paused
    std::optional<Seconds> pausedRemainingSeconds;        ///< only while paused
    Seconds plannedDuration{0.0};                         ///< includes the time that the user added
    Seconds accumulatedPauseSeconds{0.0};                 ///< pauses of this phase that have ended
    std::int64_t interruptionCount = 0;                   ///< pauses of this phase
    std::int64_t completedFocusCount = 0;                 ///< completed focus phases since the first start
    std::optional<std::string> timeZoneIdentifierAtStart; ///< an IANA zone name

    bool operator==(const TimerSnapshot&) const = default;

    bool isActive() const { return runState == TimerRunState::running || runState == TimerRunState::paused; }
    /// Never negative and never undefined.
    Seconds remainingSeconds(Instant now) const;
    /// True when the phase runs and its end is at or before now.
    bool isDue(Instant now) const;
};

} // namespace brevlin
