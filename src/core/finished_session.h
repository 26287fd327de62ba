#pragma once

#include "core/instant.h"
#include "core/timer_snapshot.h"
#include "core/timer_vocabulary.h"
#include "core/uuid.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brevlin {

/// One phase that has come to an end.
struct FinishedSession
{
    Uuid id;
    TimerPhase phase = TimerPhase::focus;
    SessionOutcome outcome = SessionOutcome::completed;
    Instant startedAt;
    std::optional<Instant> scheduledEndAt; ///< absent for a phase that ended while paused
    Instant endedAt;
    Seconds plannedDuration{0.0};   ///< not negative
    Seconds effectiveDuration{0.0}; ///< the seconds that count as done, not negative
    Seconds pauseDuration{0.0};     ///< not negative
    std::int64_t cycleIndex = 1;    ///< at least 1
    std::int64_t interruptionCount = 0;
    std::optional<std::string> intention;
    bool completedWhileAway = false; ///< true exactly for the outcome of that name
    std::string timeZoneIdentifierAtStart;

    bool operator==(const FinishedSession&) const = default;
};

/// What an operation of the engine did.
struct TimerTransition
{
    TimerSnapshot snapshot;
    std::optional<FinishedSession> finishedSession;

    bool operator==(const TimerTransition&) const = default;
};

/// The headline for the end of a phase: nothing for a reset or a switch, which are not announced.
std::optional<std::string> completionTitle(TimerPhase phase, SessionOutcome outcome, AppLanguage language);

} // namespace brevlin
