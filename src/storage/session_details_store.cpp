#include "storage/session_details_store.h"

#include <utility>

namespace brevlin {

SessionDetailsStore::SessionDetailsStore(std::string path, const HistoryDisk& disk)
    : m_thread(disk.thread)
    , m_file(std::make_shared<SessionDetailsFile>(std::move(path), disk.files, disk.clock))
    , m_self(std::make_shared<SessionDetailsStore*>(this))
    , m_retryTimer(disk.scheduler, [this] { retry(); })
{
    read();
}

// What failed before anybody listened is told now.
void SessionDetailsStore::setObserver(Observer observer)
{
    m_observer = std::move(observer);
    if (m_error && m_observer.failed) {
        m_observer.failed(*m_error);
    }
}

const SessionDetails& SessionDetailsStore::of(const Uuid& id) const
{
    static const SessionDetails none;
    const auto found = m_details.find(id);
    return found == m_details.end() ? none : found->second;
}

void SessionDetailsStore::read()
{
    ++m_jobs;
    m_thread.post([file = m_file, self = std::weak_ptr(m_self)]() -> DocumentThread::Completion {
        return [self, loaded = file->load()] {
            if (const auto store = self.lock()) {
                (*store)->finishRead(loaded);
            }
        };
    });
}

void SessionDetailsStore::finishRead(Expected<SessionDetailsById, DocumentError> loaded)
{
    --m_jobs;
    m_isAwaited = false;
    if (loaded) {
        m_isRead = true;
        m_details = *std::move(loaded);
        take(std::exchange(m_sinceStart, {}));
        m_retryTimer.succeeded();
    } else {
        m_isRead = loaded.error().isAboutContent;
        fail(loaded.error());
        if (!m_isRead) {
            m_retryTimer.failed();
        }
    }
    if (m_observer.wereRead) {
        m_observer.wereRead();
    }
}

void SessionDetailsStore::take(const SessionDetailsById& changes)
{
    for (const auto& [id, details] : changes) {
        if (details.isEmpty()) {
            m_details.erase(id);
        } else {
            m_details[id] = details;
        }
    }
}

void SessionDetailsStore::set(SessionDetailsById changes)
{
    if (m_isRead) {
        std::erase_if(changes, [this](const auto& change) { return of(change.first) == change.second; });
    }
    if (changes.empty()) {
        return;
    }
    take(changes);
    if (!m_isRead) {
        for (const auto& [id, details] : changes) {
            m_sinceStart[id] = details;
        }
    }
    post([changes = std::move(changes)](SessionDetailsFile& file) { return file.apply(changes); });
}

void SessionDetailsStore::clear()
{
    m_details.clear();
    m_sinceStart.clear();
    m_isRead = true;
    post([](SessionDetailsFile& file) { return file.clear(); });
}

void SessionDetailsStore::retry()
{
    if (m_jobs > 0) {
        return;
    }
    if (!m_isRead) {
        read();
    }
    if (!isSaved()) {
        post([](SessionDetailsFile& file) { return file.flush(); });
    }
}

void SessionDetailsStore::post(Attempt attempt)
{
    m_unsavedVersion = ++m_version;
    ++m_jobs;
    m_thread.post([file = m_file, self = std::weak_ptr(m_self), attempt = std::move(attempt),
                   version = m_version]() -> DocumentThread::Completion {
        return [self, version, saved = attempt(*file)] {
            if (const auto store = self.lock()) {
                (*store)->finish(version, saved);
            }
        };
    });
}

void SessionDetailsStore::finish(std::uint64_t version, const Expected<void, DocumentError>& saved)
{
    --m_jobs;
    if (!saved) {
        fail(saved.error());
        m_retryTimer.failed();
    } else if (version == m_unsavedVersion) {
        m_unsavedVersion = 0;
        m_error.reset();
        m_retryTimer.succeeded();
    }
}

void SessionDetailsStore::fail(const DocumentError& error)
{
    const bool isNew = !m_error;
    m_error = error;
    if (isNew && m_observer.failed) {
        m_observer.failed(error);
    }
}

} // namespace brevlin
