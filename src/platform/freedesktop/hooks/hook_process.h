#pragma once

#include "platform/hook_programs.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>

namespace brevlin {

struct HookLimits
{
    std::chrono::milliseconds longestRun{30'000};
    std::chrono::milliseconds grace{2000};      ///< between the request to end and the kill
    std::chrono::milliseconds whenHurried{800}; ///< from then on
    std::size_t keptOutput = 2000;              ///< bytes
};

/// Runs the program, without a shell, in a process group of its own, with the input on its standard input and
/// in the user's home folder. Whoever takes too long is asked to end, with all of its group, and then killed.
/// What the program leaves running in the background when it ends by itself is left alone.
HookResult runHook(const std::string& program, const HookCall& call, const HookLimits& limits,
                   const std::atomic<bool>& isHurried);

} // namespace brevlin
