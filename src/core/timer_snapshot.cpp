#include "core/timer_snapshot.h"

namespace brevlin {

namespace {

// Written so that an undefined number becomes 0 as well.
Seconds atLeastZero(Seconds value)
{
    return value > Seconds::zero() ? value : Seconds::zero();
}

} // namespace

Seconds TimerSnapshot::remainingSeconds(Instant now) const
{
    switch (runState) {
    case TimerRunState::idle:
        return atLeastZero(plannedDuration);
    case TimerRunState::running:
        return expectedEndAt ? atLeastZero(*expectedEndAt - now) : Seconds::zero();
    case TimerRunState::paused:
        return atLeastZero(pausedRemainingSeconds.value_or(Seconds::zero()));
    case TimerRunState::ringing:
        break;
    }
    return Seconds::zero();
}

bool TimerSnapshot::isDue(Instant now) const
{
    return runState == TimerRunState::running && expectedEndAt && *expectedEndAt <= now;
}

} // namespace brevlin
