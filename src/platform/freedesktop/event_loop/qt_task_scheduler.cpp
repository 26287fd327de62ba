#include "platform/freedesktop/event_loop/qt_task_scheduler.h"

#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

std::chrono::milliseconds wholeMilliseconds(Seconds delay)
{
    // A day is far more than any task of ours waits, and far less than overflows a QTimer.
    constexpr Seconds longest{86'400.0};
    const Seconds wait = std::clamp(delay, Seconds::zero(), longest);
    return std::chrono::milliseconds{static_cast<std::int64_t>(std::ceil(wait.count() * 1000.0))};
}

class TimerTask final : public ScheduledTask
{
public:
    TimerTask() : m_timer(new QTimer) { m_timer->setTimerType(Qt::PreciseTimer); }
    TimerTask(const TimerTask&) = delete;
    TimerTask& operator=(const TimerTask&) = delete;
    ~TimerTask() override
    {
        // Later, because the task may be what destroys its own handle.
        m_timer->stop();
        m_timer->disconnect();
        m_timer->deleteLater();
    }

    QTimer& timer() { return *m_timer; }

private:
    QTimer* m_timer; // owned; deleted by the event loop
};

} // namespace

TaskHandle QtTaskScheduler::after(Seconds delay, std::function<void()> task)
{
    auto handle = std::make_unique<TimerTask>();
    QTimer& timer = handle->timer();
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, std::move(task));
    timer.start(wholeMilliseconds(delay));
    return handle;
}

TaskHandle QtTaskScheduler::every(Seconds firstDelay, Seconds interval, std::function<void()> task)
{
    auto handle = std::make_unique<TimerTask>();
    QTimer& timer = handle->timer();
    const auto period = wholeMilliseconds(interval);
    QObject::connect(&timer, &QTimer::timeout, &timer, [&timer, period, task = std::move(task)] {
        // Before the task, which may cancel.
        if (timer.intervalAsDuration() != period) {
            timer.start(period);
        }
        task();
    });
    // Should the first delay equal the interval, the timer simply repeats.
    timer.start(wholeMilliseconds(firstDelay));
    return handle;
}

} // namespace brevlin
