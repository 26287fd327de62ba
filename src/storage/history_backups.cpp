#include "storage/history_backups.h"

#include <utility>

namespace brevlin {

HistoryBackups::HistoryBackups(BackupPaths paths, const HistoryDisk& disk)
    : m_thread(disk.thread)
    , m_folder(std::make_shared<HistoryBackupFolder>(std::move(paths), disk.files))
    , m_self(std::make_shared<HistoryBackups*>(this))
    , m_retryTimer(disk.scheduler, [this] { retry(); })
{}

void HistoryBackups::recordWasWritten(LocalDay today)
{
    if (m_latest == today) {
        return;
    }
    m_latest = today;
    m_thread.post([folder = m_folder, self = std::weak_ptr(m_self), today]() -> DocumentThread::Completion {
        if (folder->make(today)) {
            return {};
        }
        return [self, today] {
            if (const auto backups = self.lock(); backups && (*backups)->m_latest == today) {
                (*backups)->m_latest.reset();
            }
        };
    });
}

void HistoryBackups::clear()
{
    m_latest.reset();
    m_isToBeCleared = true;
    retry();
}

void HistoryBackups::retry()
{
    if (!m_isToBeCleared) {
        return;
    }
    m_isToBeCleared = false; // until it has failed
    m_thread.post([folder = m_folder, self = std::weak_ptr(m_self)]() -> DocumentThread::Completion {
        return [self, cleared = folder->clear()] {
            if (const auto backups = self.lock()) {
                (*backups)->finishClear(cleared);
            }
        };
    });
}

void HistoryBackups::finishClear(const Expected<void, DocumentError>& cleared)
{
    if (cleared) {
        m_retryTimer.succeeded();
        m_hasFailed = false;
        return;
    }
    m_isToBeCleared = true;
    m_retryTimer.failed();
    if (!std::exchange(m_hasFailed, true) && m_failed) {
        m_failed(cleared.error());
    }
}

void HistoryBackups::list(std::function<void(const List&)> done)
{
    m_thread.post([folder = m_folder, self = std::weak_ptr(m_self),
                   done = std::move(done)]() -> DocumentThread::Completion {
        return [self, days = folder->days(), done] {
            const auto backups = self.lock();
            if (!backups) {
                return;
            }
            if (!days) {
                done(Unexpected{days.error()});
                return;
            }
            (*backups)->listOn(std::make_shared<Listing>(Listing{{days->rbegin(), days->rend()}, {}, done}));
        };
    });
}

void HistoryBackups::listOn(const std::shared_ptr<Listing>& listing)
{
    if (listing->days.empty()) {
        listing->done(std::move(listing->entries));
        return;
    }
    const LocalDay day = listing->days.back();
    listing->days.pop_back();
    m_thread.post(
        [folder = m_folder, self = std::weak_ptr(m_self), listing, day]() -> DocumentThread::Completion {
            return [self, listing, day, count = folder->count(day)] {
                if (const auto backups = self.lock()) {
                    listing->entries.push_back({day, count ? std::optional{*count} : std::nullopt});
                    (*backups)->listOn(listing);
                }
            };
        });
}

void HistoryBackups::read(LocalDay day, std::function<void(Content)> done)
{
    m_thread.post([folder = m_folder, self = std::weak_ptr(m_self), day,
                   done = std::move(done)]() -> DocumentThread::Completion {
        auto content = std::make_shared<Content>(folder->read(day));
        return [self, content, done] {
            if (self.lock()) {
                done(std::move(*content));
            }
        };
    });
}

} // namespace brevlin
