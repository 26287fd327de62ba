#pragma once

#include "core/instant.h"
#include "core/timer_vocabulary.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brevlin {

/// What other programs are told of the timer.
struct TimerStatus
{
    TimerPhase phase = TimerPhase::focus; ///< while ringing, the prepared next phase
    TimerRunState state = TimerRunState::idle;
    Seconds remaining{0.0};        ///< not negative
    std::optional<Instant> endsAt; ///< only while running
    Seconds planned{0.0};          ///< includes the time that was added
    std::string intention;         ///< of the phase under way, else of the next focus phase; may be empty
    std::int64_t cyclePosition = 1;
    std::int64_t cycleLength = 1;
    Seconds focusToday{0.0}; ///< of completed focus phases that ended today
    std::int64_t completedToday = 0;

    bool operator==(const TimerStatus&) const = default;
};

} // namespace brevlin
