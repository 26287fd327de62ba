#pragma once

#include "storage/history_backup_folder.h"
#include "storage/retry_timer.h"
#include "storage/session_store.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brevlin {

/// One copy a day of the history and its details, made and looked through beside the main thread. A copy that
/// fails harms nothing and is tried again with the next record; a removal that fails is tried again by
/// itself.
class HistoryBackups final
{
public:
    /// One that can be shown.
    struct Entry
    {
        LocalDay day;
        std::optional<std::size_t> recordCount; ///< none: it is damaged
    };
    using List = Expected<std::vector<Entry>, DocumentError>;
    using Content = Expected<HistoryBackup, DocumentError>;

    HistoryBackups(BackupPaths paths, const HistoryDisk& disk);
    HistoryBackups(const HistoryBackups&) = delete;
    HistoryBackups& operator=(const HistoryBackups&) = delete;

    /// Told when copies could not be removed, for the first time since one could.
    void setFailureHandler(std::function<void(const DocumentError&)> failed) { m_failed = std::move(failed); }

    /// To be called whenever a new record is on the disk.
    void recordWasWritten(LocalDay today);
    /// Removes every copy.
    void clear();
    /// Tries now what is still to be removed, if anything.
    void retry();

    /// Gives the list later, the latest first. Other documents come in between, as every copy is read.
    void list(std::function<void(const List&)> done);
    /// Gives the day's copy later, where it is whole.
    void read(LocalDay day, std::function<void(Content)> done);

private:
    struct Listing
    {
        std::vector<LocalDay> days;
        std::vector<Entry> entries;
        std::function<void(const List&)> done;
    };

    void finishClear(const Expected<void, DocumentError>& cleared);
    void listOn(const std::shared_ptr<Listing>& listing);

    DocumentThread& m_thread;
    std::shared_ptr<HistoryBackupFolder> m_folder; // for the jobs alone
    std::shared_ptr<HistoryBackups*> m_self;       // seen by completions as long as this lives
    RetryTimer m_retryTimer;
    std::function<void(const DocumentError&)> m_failed;
    std::optional<LocalDay> m_latest; // has a copy, or is getting one
    bool m_isToBeCleared = false;
    bool m_hasFailed = false;
};

} // namespace brevlin
