#include "platform/freedesktop/event_loop/document_worker.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace brevlin {

namespace {

std::chrono::steady_clock::time_point deadlineIn(Seconds length)
{
    using namespace std::chrono;
    return steady_clock::now() + duration_cast<steady_clock::duration>(length);
}

} // namespace

DocumentWorker::DocumentWorker(QObject* parent) : QObject(parent)
{
    m_thread = std::thread([this] { work(); });
}

DocumentWorker::~DocumentWorker()
{
    std::unique_lock lock(m_mutex);
    m_isEnding = true;
    m_changed.notify_all();
    if (!m_changed.wait_until(lock, deadlineIn(longestEnd), [this] { return m_jobs.empty(); })) {
        std::fputs("Brevlin: the disk does not answer; what it was given last may not be saved.\n"
                   "Brevlin：磁盘没有响应，最后的更改可能未保存。\n",
                   stderr);
        std::_Exit(EXIT_FAILURE);
    }
    lock.unlock();
    m_thread.join();
}

void DocumentWorker::post(Job job)
{
    const std::lock_guard lock(m_mutex);
    m_jobs.push_back(std::move(job));
    m_changed.notify_all();
}

bool DocumentWorker::drain(Seconds longest)
{
    const auto deadline = deadlineIn(longest);
    for (;;) {
        runCompletions();
        std::unique_lock lock(m_mutex);
        if (m_jobs.empty() && m_completions.empty()) {
            return true;
        }
        if (!m_changed.wait_until(lock, deadline,
                                  [this] { return m_jobs.empty() || !m_completions.empty(); })) {
            return false;
        }
    }
}

void DocumentWorker::work()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_isEnding || !m_jobs.empty(); });
        if (m_jobs.empty()) {
            return;
        }
        Job job = std::move(m_jobs.front());
        lock.unlock();
        Completion completion = job();
        job = {}; // what it holds may be large
        lock.lock();
        m_jobs.pop_front();
        if (completion) {
            m_completions.push_back(std::move(completion));
            QMetaObject::invokeMethod(this, &DocumentWorker::runCompletions, Qt::QueuedConnection);
        }
        m_changed.notify_all();
    }
}

void DocumentWorker::runCompletions()
{
    for (;;) {
        std::unique_lock lock(m_mutex);
        if (m_completions.empty()) {
            return;
        }
        const Completion completion = std::move(m_completions.front());
        m_completions.pop_front();
        lock.unlock();
        completion();
    }
}

} // namespace brevlin
