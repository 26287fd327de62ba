#pragma once

#include "platform/task_scheduler.h"

namespace brevlin {

/// Runs tasks on the event loop of the thread that schedules them, never early: once to the millisecond,
/// again and again as exactly as the system wakes the thread.
class QtTaskScheduler final : public TaskScheduler
{
public:
    [[nodiscard]] TaskHandle after(Seconds delay, std::function<void()> task) override;
    [[nodiscard]] TaskHandle every(Seconds firstDelay, Seconds interval, std::function<void()> task) override;
};

} // namespace brevlin
