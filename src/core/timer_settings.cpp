#include "core/timer_settings.h"

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

Seconds sanitizedDuration(Seconds value, Seconds fallback)
{
    return std::isfinite(value.count()) ? std::max(value, Seconds{1.0}) : fallback;
}

} // namespace

TimerSettings TimerSettings::sanitized() const
{
    const TimerSettings defaults;
    TimerSettings result = *this;
    result.focusDuration = sanitizedDuration(focusDuration, defaults.focusDuration);
    result.shortBreakDuration = sanitizedDuration(shortBreakDuration, defaults.shortBreakDuration);
    result.longBreakDuration = sanitizedDuration(longBreakDuration, defaults.longBreakDuration);
    result.focusSessionsPerLongBreak = std::max<std::int64_t>(focusSessionsPerLongBreak, 1);
    return result;
}

Seconds TimerSettings::duration(TimerPhase phase) const
{
    switch (phase) {
    case TimerPhase::focus:
        return focusDuration;
    case TimerPhase::shortBreak:
        return shortBreakDuration;
    case TimerPhase::longBreak:
        break;
    }
    return longBreakDuration;
}

void TimerSettings::setDuration(TimerPhase phase, Seconds duration)
{
    switch (phase) {
    case TimerPhase::focus:
        focusDuration = duration;
        break;
    case TimerPhase::shortBreak:
        shortBreakDuration = duration;
        break;
    case TimerPhase::longBreak:
        longBreakDuration = duration;
        break;
    }
}

} // namespace brevlin
