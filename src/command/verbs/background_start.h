#pragma once

#include "command/verbs/session_links.h"

namespace brevlin {

/// Starts the program without its window: by the bus where that knows it, else as a process of its own, which
/// outlives this one. Gives its answer to the request, or nothing where it could not be started.
std::optional<ControlAnswer> askStarted(SessionLinks& links, const ControlRequest& request);

} // namespace brevlin
