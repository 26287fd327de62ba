#pragma once

#include "command/line/output.h"
#include "command/verbs/session_links.h"
#include "command/verbs/verb_line.h"

namespace brevlin {

/// Writes a line at once and at each change, until nobody reads it any longer. Sleeps in between.
ExitStatus followStatus(SessionLinks& links, const StatusCommand& command, AppLanguage language);

/// The line for an answer, or for a program that does not run.
std::string statusText(const StatusCommand& command, const std::optional<ControlAnswer>& answer,
                       AppLanguage language);

} // namespace brevlin
