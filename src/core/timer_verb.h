#pragma once

#include "core/language.h"
#include "core/raw_value.h"
#include "core/timer_vocabulary.h"

#include <array>
#include <optional>

namespace brevlin {

/// What other programs may do to the timer: the words of the command line.
enum class TimerVerb {
    start,   ///< begins the phase that is prepared
    pause,   ///< freezes the running phase
    resume,  ///< goes on with the paused phase
    toggle,  ///< whichever of the three applies
    skip,    ///< goes over to the other kind of phase: at once, or in place of the one that waits
    stop,    ///< ends the phase before its time; a phase that waits for the user is put off
    extend,  ///< five minutes more
    silence, ///< stops the alert
};

/// Whether the verb has something to do in this state, and if not, why: a whole sentence.
std::optional<BilingualText> refusal(TimerVerb verb, TimerRunState state, bool isAlertSounding);

template <>
struct RawValues<TimerVerb>
{
    static constexpr std::array cases{
        RawValueCase<TimerVerb>{TimerVerb::start, "start"},
        RawValueCase<TimerVerb>{TimerVerb::pause, "pause"},
        RawValueCase<TimerVerb>{TimerVerb::resume, "resume"},
        RawValueCase<TimerVerb>{TimerVerb::toggle, "toggle"},
        RawValueCase<TimerVerb>{TimerVerb::skip, "skip"},
        RawValueCase<TimerVerb>{TimerVerb::stop, "stop"},
        RawValueCase<TimerVerb>{TimerVerb::extend, "extend"},
        RawValueCase<TimerVerb>{TimerVerb::silence, "silence"},
    };
};

} // namespace brevlin
