#pragma once

#include "platform/document_thread.h"

#include <deque>
#include <utility>

namespace brevlin::test {

/// Runs jobs on the thread of the test: at once, or one by one on demand.
class FakeDocumentThread final : public DocumentThread
{
public:
    bool runsAtOnce = true;

    void post(Job job) override
    {
        m_jobs.push_back(std::move(job));
        if (runsAtOnce && !m_isRunning) {
            runAll();
        }
    }
    bool drain(Seconds /*longest*/) override
    {
        if (runsAtOnce) {
            runAll();
        }
        return m_jobs.empty();
    }

    std::size_t waitingCount() const { return m_jobs.size(); }
    void runOne()
    {
        const Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        if (const Completion completion = job()) {
            completion();
        }
    }
    void runAll()
    {
        m_isRunning = true;
        while (!m_jobs.empty()) {
            runOne();
        }
        m_isRunning = false;
    }

private:
    std::deque<Job> m_jobs;
    bool m_isRunning = false;
};

} // namespace brevlin::test
