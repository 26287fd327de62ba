#include "core/hook_event.h"

namespace brevlin {

namespace {

bool leftForTheOtherKind(SessionOutcome outcome)
{
    return outcome == SessionOutcome::skipped || outcome == SessionOutcome::switchedEarly;
}

} // namespace

std::vector<HookOccasion> hookOccasions(const TimerSnapshot& previous, const TimerSnapshot& next,
                                        const std::optional<FinishedSession>& finished)
{
    using enum TimerRunState;
    std::vector<HookOccasion> occasions;
    const auto add = [&occasions](HookEvent event, const TimerSnapshot& of) {
        occasions.push_back({event, of.phase, of.intention.value_or(std::string()), std::nullopt});
    };
    if (finished) {
        occasions.push_back(
            {leftForTheOtherKind(finished->outcome) ? HookEvent::phaseSkipped : HookEvent::phaseEnded,
             finished->phase, finished->intention.value_or(std::string()), finished});
    } else if (previous.runState == ringing && next.runState == ringing && previous.phase != next.phase) {
        add(HookEvent::phaseSkipped, previous);
    }
    const bool isSamePhase = next.sessionID && next.sessionID == previous.sessionID;
    if (next.isActive() && !isSamePhase) {
        add(HookEvent::phaseStarted, next);
    }
    if (isSamePhase && previous.runState == running && next.runState == paused) {
        add(HookEvent::phasePaused, next);
    } else if (isSamePhase && previous.runState == paused && next.runState == running) {
        add(HookEvent::phaseResumed, next);
    }
    return occasions;
}

} // namespace brevlin
