#pragma once

#include "platform/document_thread.h"

#include <QObject>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace brevlin {

/// One thread for the documents; completions run on the event loop of the thread that made it. What was
/// posted before the destruction is done before it ends. A disk that answers nothing for longestEnd ends the
/// process instead: it has been waited for, and been said what could not be saved.
class DocumentWorker final : public QObject, public DocumentThread
{
    Q_OBJECT

public:
    static constexpr Seconds longestEnd{2.0};

    explicit DocumentWorker(QObject* parent = nullptr);
    ~DocumentWorker() override;

    void post(Job job) override;
    bool drain(Seconds longest) override;

private:
    void work();
    void runCompletions();

    std::mutex m_mutex; // of the four below
    std::condition_variable m_changed;
    std::deque<Job> m_jobs; // the first one is being done
    std::deque<Completion> m_completions;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace brevlin
