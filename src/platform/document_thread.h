#pragma once

#include "core/instant.h"

#include <functional>

namespace brevlin {

/// Where documents are read and written: beside the main thread, because a disk may take seconds for what it
/// is asked, and one job after the other, because the order of what reaches the disk is what survives a
/// crash.
class DocumentThread
{
public:
    using Completion = std::function<void()>;
    using Job = std::function<Completion()>;

    virtual ~DocumentThread() = default;

    /// Runs the job after all that were posted before, and what it gives (if anything) afterwards on the main
    /// thread. A job owns what it works with; a completion has to see for itself whether its owner still
    /// lives.
    virtual void post(Job job) = 0;
    /// For the main thread: waits until every job is done and its completion has run, also those that come
    /// from a completion; false when that takes longer.
    virtual bool drain(Seconds longest) = 0;
};

} // namespace brevlin
