#pragma once

#include "core/hook_event.h"

#include <string>
#include <utility>
#include <vector>

namespace brevlin {

/// What the programs of the user are told.
struct HookCall
{
    HookEvent event = HookEvent::phaseStarted;
    std::vector<std::pair<std::string, std::string>> variables; ///< beside those that Brevlin itself has
    std::string input;
};

/// How one of them ended.
struct HookResult
{
    enum class Kind {
        done,
        failed,      ///< with a code of its own, or by a signal
        tookTooLong, ///< and was ended
        unsafe,      ///< others could have written it, so it did not run
        notStarted
    };

    std::string name; ///< of the file
    HookEvent event = HookEvent::phaseStarted;
    Kind kind = Kind::done;
    int code = 0;       ///< what it exited with, or 128 and the signal
    std::string output; ///< the end of it, or the system's words for what was not started

    bool operator==(const HookResult&) const = default;
};

/// The programs that the user has put into one folder.
class HookPrograms
{
public:
    virtual ~HookPrograms() = default;

    virtual const std::string& folder() const = 0;
    /// Runs them all, one after the other in the order of their names, and gives how each ended. Takes as
    /// long as they do, so not for the main thread.
    virtual std::vector<HookResult> run(const HookCall& call) = 0;
    /// Brevlin is about to end: who runs has a moment left, and nobody starts any more. From any thread.
    virtual void hurry() = 0;
};

} // namespace brevlin
