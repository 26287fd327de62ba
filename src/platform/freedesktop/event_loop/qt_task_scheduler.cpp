#include "platform/freedesktop/event_loop/qt_task_scheduler.h"

#include <QSocketNotifier>
#include <QTimer>

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

// A day is far more than any task of ours waits, and far less than overflows a QTimer.
constexpr Seconds longestDelay{86'400.0};

std::chrono::milliseconds wholeMilliseconds(Seconds delay)
{
    const Seconds wait = std::clamp(delay, Seconds::zero(), longestDelay);
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

timespec timeSpan(Seconds length)
{
    const auto span = std::chrono::duration_cast<std::chrono::nanoseconds>(
        std::clamp(length, Seconds{1e-9}, longestDelay)); // 0 would stop the timer
    constexpr std::int64_t second = 1'000'000'000;
    return {span.count() / second, span.count() % second};
}

/// A timer of the system's. Qt's own and the loop that waits for it round up to a millisecond each, and a
/// phase's end is to be noticed when it comes.
class ExactRepetition final : public ScheduledTask
{
public:
    /// None where the process has no file descriptor left.
    static TaskHandle start(Seconds firstDelay, Seconds interval, const std::function<void()>& task)
    {
        const int timer = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
        if (timer < 0) {
            return nullptr;
        }
        const itimerspec times{timeSpan(interval), timeSpan(firstDelay)};
        timerfd_settime(timer, 0, &times, nullptr);
        return std::make_unique<ExactRepetition>(timer, task);
    }

    ExactRepetition(int timer, const std::function<void()>& task)
        : m_timer(timer), m_notifier(new QSocketNotifier(timer, QSocketNotifier::Read))
    {
        QObject::connect(m_notifier, &QSocketNotifier::activated, m_notifier, [timer, task] {
            std::uint64_t firings = 0;
            if (read(timer, &firings, sizeof firings) == sizeof firings) {
                task();
            }
        });
    }
    ExactRepetition(const ExactRepetition&) = delete;
    ExactRepetition& operator=(const ExactRepetition&) = delete;
    ~ExactRepetition() override
    {
        // Deleted later, because the task may be what destroys its own handle.
        m_notifier->setEnabled(false);
        m_notifier->disconnect();
        m_notifier->deleteLater();
        close(m_timer);
    }

private:
    int m_timer;
    QSocketNotifier* m_notifier; // owned; deleted by the event loop
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
    if (auto exact = ExactRepetition::start(firstDelay, interval, task)) {
        return exact;
    }
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
