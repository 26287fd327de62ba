#pragma once

#include "core/language.h"
#include "core/timer_vocabulary.h"

#include <string>

/// What the timer's controls say, wherever they stand. UTF-8.
namespace brevlin::TimerWords {

/// What the control that goes on with the timer is called in this state.
std::string primaryAction(TimerPhase phase, TimerRunState state, AppLanguage language);
std::string start(TimerPhase phase, AppLanguage language);
std::string skip(TimerPhase phase, AppLanguage language);

inline constexpr BilingualText pause{"暂停", "Pause"};
inline constexpr BilingualText resume{"继续", "Resume"};
inline constexpr BilingualText stopSound{"停止声音", "Stop sound"};

} // namespace brevlin::TimerWords
