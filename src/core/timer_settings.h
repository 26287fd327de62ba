#pragma once

#include "core/instant.h"
#include "core/timer_vocabulary.h"

#include <cstdint>

namespace brevlin {

/// The lengths and the cycle of the timer. Every duration is finite and at least one second and
/// focusSessionsPerLongBreak at least 1 in every value that went through sanitized(); the engine takes no
/// other.
struct TimerSettings
{
    Seconds focusDuration{1500.0};
    Seconds shortBreakDuration{300.0};
    Seconds longBreakDuration{900.0};
    std::int64_t focusSessionsPerLongBreak =
        4; ///< every N-th completed focus phase is followed by a long break
    bool autoStartBreaks = false;
    bool autoStartFocus = false;
    AlertIntensity alertIntensity = AlertIntensity::standard;

    bool operator==(const TimerSettings&) const = default;

    /// The same settings with too short durations raised to one second, infinite and undefined ones replaced
    /// by the field's default, and the cycle length raised to 1.
    [[nodiscard]] TimerSettings sanitized() const;
    Seconds duration(TimerPhase phase) const;
    void setDuration(TimerPhase phase, Seconds duration);
};

} // namespace brevlin
