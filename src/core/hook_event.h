#pragma once

#include "core/finished_session.h"
#include "core/raw_value.h"
#include "core/timer_snapshot.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace brevlin {

/// What the programs of the user are told of.
enum class HookEvent {
    phaseStarted,
    phasePaused,
    phaseResumed,
    phaseEnded,   ///< it ran to its end, or was ended or reset before
    phaseSkipped, ///< it was left for the other kind, or never began
};

template <>
struct RawValues<HookEvent>
{
    static constexpr std::array cases{
        RawValueCase<HookEvent>{HookEvent::phaseStarted, "phase-started"},
        RawValueCase<HookEvent>{HookEvent::phasePaused, "phase-paused"},
        RawValueCase<HookEvent>{HookEvent::phaseResumed, "phase-resumed"},
        RawValueCase<HookEvent>{HookEvent::phaseEnded, "phase-ended"},
        RawValueCase<HookEvent>{HookEvent::phaseSkipped, "phase-skipped"},
    };
};

/// One of them, and the phase that it is about.
struct HookOccasion
{
    HookEvent event = HookEvent::phaseStarted;
    TimerPhase phase = TimerPhase::focus;
    std::string intention;                   ///< of the phase; may be empty
    std::optional<FinishedSession> finished; ///< of a phase that had begun and is over

    bool operator==(const HookOccasion&) const = default;
};

/// What a transition of the timer is, in the order in which it happened: first what is over, then what
/// begins.
std::vector<HookOccasion> hookOccasions(const TimerSnapshot& previous, const TimerSnapshot& next,
                                        const std::optional<FinishedSession>& finished);

} // namespace brevlin
