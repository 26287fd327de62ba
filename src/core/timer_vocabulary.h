#pragma once

#include "core/language.h"
#include "core/raw_value.h"

#include <array>
#include <string_view>

namespace brevlin {

/// What a stretch of time is for.
enum class TimerPhase { focus, shortBreak, longBreak };

enum class TimerRunState {
    idle,    ///< a phase is prepared but not started
    running, ///< the phase counts down to a known instant
    paused,  ///< the phase is frozen with a known remaining time
    ringing, ///< a phase has ended; the next one is prepared and waits for the user
};

/// How a phase ended.
enum class SessionOutcome { completed, completedWhileAway, skipped, reset, endedEarly, switchedEarly };

/// How loudly the end of a phase is announced.
enum class AlertIntensity { gentle, standard, strong };

std::string_view title(TimerPhase phase, AppLanguage language);
std::string_view title(SessionOutcome outcome, AppLanguage language);
std::string_view title(AlertIntensity intensity, AppLanguage language);
std::string_view detail(AlertIntensity intensity, AppLanguage language);

/// True for the two outcomes of a phase that ran to its end.
constexpr bool isCompletion(SessionOutcome outcome)
{
    return outcome == SessionOutcome::completed || outcome == SessionOutcome::completedWhileAway;
}

template <>
struct RawValues<TimerPhase>
{
    static constexpr std::array cases{
        RawValueCase<TimerPhase>{TimerPhase::focus, "focus"},
        RawValueCase<TimerPhase>{TimerPhase::shortBreak, "shortBreak"},
        RawValueCase<TimerPhase>{TimerPhase::longBreak, "longBreak"},
    };
};

template <>
struct RawValues<TimerRunState>
{
    static constexpr std::array cases{
        RawValueCase<TimerRunState>{TimerRunState::idle, "idle"},
        RawValueCase<TimerRunState>{TimerRunState::running, "running"},
        RawValueCase<TimerRunState>{TimerRunState::paused, "paused"},
        RawValueCase<TimerRunState>{TimerRunState::ringing, "ringing"},
    };
};

template <>
struct RawValues<SessionOutcome>
{
    static constexpr std::array cases{
        RawValueCase<SessionOutcome>{SessionOutcome::completed, "completed"},
        RawValueCase<SessionOutcome>{SessionOutcome::completedWhileAway, "completedWhileAway"},
        RawValueCase<SessionOutcome>{SessionOutcome::skipped, "skipped"},
        RawValueCase<SessionOutcome>{SessionOutcome::reset, "reset"},
        RawValueCase<SessionOutcome>{SessionOutcome::endedEarly, "endedEarly"},
        RawValueCase<SessionOutcome>{SessionOutcome::switchedEarly, "switchedEarly"},
    };
};

template <>
struct RawValues<AlertIntensity>
{
    static constexpr std::array cases{
        RawValueCase<AlertIntensity>{AlertIntensity::gentle, "gentle"},
        RawValueCase<AlertIntensity>{AlertIntensity::standard, "standard"},
        RawValueCase<AlertIntensity>{AlertIntensity::strong, "strong"},
    };
};

} // namespace brevlin
