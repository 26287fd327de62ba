#pragma once

#include "core/session_details.h"
#include "storage/retry_timer.h"
#include "storage/session_details_file.h"
#include "storage/session_store.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace brevlin {

/// What is known of phases beside their records: all of it in memory, and the same in one file, which is
/// written beside the main thread and again and again while the disk refuses. Details of phases without a
/// record do no harm. As long as the file could not be read, nothing is written over it.
class SessionDetailsStore final
{
public:
    struct Observer
    {
        /// They have been read; also when that has failed, and again once it has not.
        std::function<void()> wereRead;
        /// An operation failed for the first time since one succeeded. It is tried again unless the content
        /// is at fault, which is then set aside.
        std::function<void(const DocumentError&)> failed;
    };

    /// Reads the details.
    SessionDetailsStore(std::string path, const HistoryDisk& disk);
    SessionDetailsStore(const SessionDetailsStore&) = delete;
    SessionDetailsStore& operator=(const SessionDetailsStore&) = delete;

    void setObserver(Observer observer);

    const SessionDetailsById& all() const { return m_details; }
    /// Empty ones where nothing is known.
    const SessionDetails& of(const Uuid& id) const;
    bool isAwaited() const { return m_isAwaited; }
    /// Whether it is known what the file held.
    bool isRead() const { return m_isRead; }
    /// Whether every change is on the disk.
    bool isSaved() const { return m_unsavedVersion == 0; }

    void set(const Uuid& id, SessionDetails details) { set({{id, std::move(details)}}); }
    /// Empty ones remove what was known.
    void set(SessionDetailsById changes);
    void clear();
    /// Tries now what is still to be done, if anything.
    void retry();

private:
    using Attempt = std::function<Expected<void, DocumentError>(SessionDetailsFile&)>;

    void read();
    void finishRead(Expected<SessionDetailsById, DocumentError> loaded);
    void take(const SessionDetailsById& changes);
    void post(Attempt attempt);
    void finish(std::uint64_t version, const Expected<void, DocumentError>& saved);
    void fail(const DocumentError& error);

    DocumentThread& m_thread;
    std::shared_ptr<SessionDetailsFile> m_file;   // for the jobs alone
    std::shared_ptr<SessionDetailsStore*> m_self; // seen by completions as long as this lives
    RetryTimer m_retryTimer;
    Observer m_observer;
    SessionDetailsById m_details;
    SessionDetailsById m_sinceStart; // changes from before the file was read
    std::uint64_t m_version = 0;
    std::uint64_t m_unsavedVersion = 0; // none: 0
    bool m_isAwaited = true;
    bool m_isRead = false;
    std::optional<DocumentError> m_error; // since the last success
    int m_jobs = 0;
};

} // namespace brevlin
