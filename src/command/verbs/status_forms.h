#pragma once

#include "command/verbs/verb_line.h"
#include "core/instant.h"
#include "core/language.h"
#include "core/timer_status.h"

#include <optional>
#include <string>

namespace brevlin {

/// One line, with its end, that tells the status in the form; nothing for a timer that nobody runs. JSON is
/// statusJson() of exchange/, not made here. Times of day are those of the process's zone.
std::string statusLine(StatusForm form, const std::optional<TimerStatus>& status, AppLanguage language);

/// As it is at the instant: what remains of a running phase follows from its end.
TimerStatus statusAt(TimerStatus status, Instant now);

} // namespace brevlin
