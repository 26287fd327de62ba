#pragma once

#include "core/instant.h"

#include <functional>
#include <memory>

namespace brevlin {

/// A task that will run later. Its destruction cancels the task, also from inside the task itself.
class ScheduledTask
{
public:
    virtual ~ScheduledTask() = default;
};

using TaskHandle = std::unique_ptr<ScheduledTask>;

/// Every delay of the program goes through here, so that a test moves virtual time and sleeps for nothing.
/// Tasks run on the main thread, never inside the call that schedules them.
class TaskScheduler
{
public:
    virtual ~TaskScheduler() = default;

    /// Runs the task once; a delay of 0 or less runs it from the next turn of the event loop.
    [[nodiscard]] virtual TaskHandle after(Seconds delay, std::function<void()> task) = 0;
    /// Runs the task first after firstDelay and then every interval (greater than 0) without drifting. Delays
    /// run on a clock that stands still while the computer sleeps; firings that were missed are not made up
    /// for.
    [[nodiscard]] virtual TaskHandle every(Seconds firstDelay, Seconds interval,
                                           std::function<void()> task) = 0;
};

} // namespace brevlin
