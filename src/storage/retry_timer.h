#pragma once

#include "platform/task_scheduler.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace brevlin {

/// Decides when to try again what the disk refused: soon, then more and more seldom.
class RetryTimer final
{
public:
    static constexpr Seconds firstDelay{2.0};
    static constexpr Seconds longestDelay{300.0};

    RetryTimer(TaskScheduler& scheduler, std::function<void()> attempt)
        : m_scheduler(scheduler), m_attempt(std::move(attempt))
    {}

    /// An attempt failed: the next one comes later than this one did.
    void failed()
    {
        m_task = m_scheduler.after(m_delay, m_attempt);
        m_delay = std::min(m_delay * 2.0, longestDelay);
    }
    void succeeded()
    {
        m_task.reset();
        m_delay = firstDelay;
    }

private:
    TaskScheduler& m_scheduler;
    std::function<void()> m_attempt;
    Seconds m_delay = firstDelay;
    TaskHandle m_task;
};

} // namespace brevlin
