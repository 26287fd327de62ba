#pragma once

#include "platform/task_scheduler.h"
#include "support/fake_clock.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace brevlin::test {

/// Runs tasks in virtual time, in the order of their due times and then of their scheduling. Nothing runs
/// except inside advance(); the clock moves along, so that a task reads the instant at which it is due.
class FakeTaskScheduler final : public TaskScheduler
{
public:
    explicit FakeTaskScheduler(FakeClock& clock) : m_clock(clock) {}

    TaskHandle after(Seconds delay, std::function<void()> task) override
    {
        return add(delay, std::nullopt, std::move(task));
    }
    TaskHandle every(Seconds firstDelay, Seconds interval, std::function<void()> task) override
    {
        return add(firstDelay, interval, std::move(task));
    }

    /// Lets this much time pass, running every task that becomes due, also tasks scheduled on the way.
    void advance(Seconds length)
    {
        const Seconds target = m_elapsed + std::max(length, Seconds::zero());
        while (const std::shared_ptr<Entry> entry = nextDue(target)) {
            moveTo(std::max(entry->due(), m_elapsed));
            ++entry->firings;
            if (!entry->interval) {
                entry->cancelled = true;
            }
            // A copy: the task may destroy its own handle, or the test's last reference to what it captured.
            const std::function<void()> task = entry->task;
            task();
        }
        moveTo(target);
    }
    /// Runs what is due now, such as tasks with a delay of 0.
    void runPending() { advance(Seconds::zero()); }

    /// Tasks that will still run.
    std::size_t pendingCount() const
    {
        return static_cast<std::size_t>(
            std::count_if(m_entries.begin(), m_entries.end(), [](const auto& e) { return !e->cancelled; }));
    }
    /// The time until the next task runs; nothing when none is scheduled.
    std::optional<Seconds> nextDelay() const
    {
        std::optional<Seconds> result;
        for (const auto& entry : m_entries) {
            if (!entry->cancelled && (!result || entry->due() - m_elapsed < *result)) {
                result = entry->due() - m_elapsed;
            }
        }
        return result;
    }

private:
    struct Entry
    {
        Seconds first;
        std::optional<Seconds> interval;
        std::function<void()> task;
        std::int64_t firings = 0;
        bool cancelled = false;

        // Multiplied rather than summed, so that a repeating task does not drift.
        Seconds due() const { return interval ? first + *interval * static_cast<double>(firings) : first; }
    };

    class Handle final : public ScheduledTask
    {
    public:
        explicit Handle(std::shared_ptr<Entry> entry) : m_entry(std::move(entry)) {}
        Handle(const Handle&) = delete;
        Handle& operator=(const Handle&) = delete;
        ~Handle() override { m_entry->cancelled = true; }

    private:
        std::shared_ptr<Entry> m_entry;
    };

    TaskHandle add(Seconds delay, std::optional<Seconds> interval, std::function<void()> task)
    {
        auto entry = std::make_shared<Entry>();
        entry->first = m_elapsed + std::max(delay, Seconds::zero());
        entry->interval = interval;
        entry->task = std::move(task);
        m_entries.push_back(entry);
        return std::make_unique<Handle>(std::move(entry));
    }

    std::shared_ptr<Entry> nextDue(Seconds target)
    {
        // A hair of tolerance: ten steps of 0.1 s are to reach a task that is due after 1 s.
        constexpr Seconds tolerance{1e-6};
        std::erase_if(m_entries, [](const auto& entry) { return entry->cancelled; });
        const auto next = std::min_element(m_entries.begin(), m_entries.end(),
                                           [](const auto& a, const auto& b) { return a->due() < b->due(); });
        return next != m_entries.end() && (*next)->due() <= target + tolerance ? *next : nullptr;
    }

    void moveTo(Seconds elapsed)
    {
        if (elapsed > m_elapsed) {
            m_clock.jump(elapsed - m_elapsed);
            m_elapsed = elapsed;
        }
    }

    FakeClock& m_clock;
    Seconds m_elapsed{0.0};
    std::vector<std::shared_ptr<Entry>> m_entries; // in the order of scheduling
};

} // namespace brevlin::test
