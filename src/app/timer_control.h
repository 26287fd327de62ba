#pragma once

#include "core/expected.h"
#include "core/language.h"
#include "core/timer_status.h"
#include "core/timer_verb.h"

namespace brevlin {

class AppModel;

/// The timer as other programs see it and what they do to it, whichever way they come.
namespace TimerControl {

TimerStatus status(const AppModel& model);
/// Why the verb has nothing to do now, where it has not.
std::optional<BilingualText> refusal(const AppModel& model, TimerVerb verb);
/// Does nothing where the verb is refused.
Expected<void, BilingualText> carryOut(AppModel& model, TimerVerb verb);

} // namespace TimerControl

} // namespace brevlin
