#pragma once

#include "core/expected.h"
#include "core/finished_session.h"
#include "core/session_record.h"
#include "core/statistics_calculator.h"
#include "platform/document_thread.h"
#include "storage/history_file.h"
#include "storage/retry_timer.h"
#include "storage/session_store_error.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brevlin {

/// What the history needs in order to be kept; everything outlives the store. The clock names what is set
/// aside.
struct HistoryDisk
{
    DurableFile& files;
    DocumentThread& thread;
    TaskScheduler& scheduler;
    const Clock& clock;
};

/// The history: all records in memory, sorted by endedAt, latest first, stable, and the same in one file. A
/// change takes effect at once and is written beside the main thread. A record that the disk refuses stays
/// and is tried again; a removal and an edit are taken back. As long as the file could not be read, nothing
/// is written over it: new records wait, and join the others once it could.
class SessionStore final
{
public:
    struct Observer
    {
        /// The records are other ones than the last command left: loaded, taken over from the file, put back.
        /// Also when the first reading has failed.
        std::function<void()> recordsChanged;
        /// An operation failed for the first time; that it is tried again and fails again is not told.
        std::function<void(const SessionStoreError&)> failed;
        /// The change of this number was refused; the records are those of before.
        std::function<void(std::uint64_t)> editTakenBack = {};
        /// The history was cleared, on the disk too.
        std::function<void()> wasCleared = {};
        /// New records have come to the disk.
        std::function<void()> recordsWritten = {};
    };

    /// Reads the history unless told otherwise.
    SessionStore(HistoryLocation location, const HistoryDisk& disk, bool fetchOnInit = true);
    SessionStore(const SessionStore&) = delete;
    SessionStore& operator=(const SessionStore&) = delete;

    void setObserver(Observer observer);

    const std::vector<SessionRecord>& sessions() const { return m_sessions; }
    /// Those of sessions().
    const FocusCounts& focusCounts() const { return m_focusCounts; }
    /// The failure of the latest operation that is known; nothing after a success.
    const std::optional<SessionStoreError>& lastError() const { return m_lastError; }
    const std::string& path() const { return m_file->path(); }
    bool isLoaded() const { return m_isLoaded; }
    /// Whether the first reading is still under way, so that nobody knows what there is.
    bool isAwaited() const { return m_isAwaited; }
    /// Whether every change is on the disk.
    bool isSaved() const { return m_unsaved.empty(); }
    /// Records that are in memory alone.
    std::size_t unsavedCount() const;

    /// Reads the file again; a failure leaves the records as they are.
    void refresh();
    /// Records the phase, in place of any record with the same id.
    SessionRecord insert(const FinishedSession& finishedSession);
    /// Removes every record with this record's id.
    void remove(const SessionRecord& record);
    /// Removes the records with these ids and puts others in their place, in one step; the placed ones stand
    /// behind those that end at the same instant, in their order. Gives the number of the edit.
    std::uint64_t edit(const std::vector<Uuid>& removed, std::vector<SessionRecord> placed);
    /// Removes all records; refused as long as the file could not be read.
    void clear();
    /// Tries now what is still to be done, if anything. At the end of the process nothing is left to wait
    /// for.
    void retry(HistoryFile::Patience patience = HistoryFile::Patience::waits);

private:
    // A change that is not known to be on the disk.
    struct Unsaved
    {
        std::uint64_t number;
        SessionStoreError::Operation operation;
        std::vector<SessionRecord> removed;
        std::vector<SessionRecord> placed;
    };

    void finishLoad(Expected<std::vector<SessionRecord>, DocumentError> loaded);
    void joinUnsaved();
    void postChange(HistoryChange change, SessionStoreError::Operation operation,
                    std::vector<SessionRecord> removed, std::vector<SessionRecord> placed = {});
    void finishChange(std::uint64_t number, HistoryOutcome outcome);
    void finishRetry(std::uint64_t number, HistoryOutcome outcome);
    void settle(std::uint64_t number, HistoryOutcome& outcome);
    void takeBack(std::uint64_t number);
    void fail(SessionStoreError::Operation operation, const DocumentError& error, bool tells);
    std::vector<SessionRecord> takeRecords(std::vector<Uuid> ids);
    void place(SessionRecord record);
    void placeAll(std::vector<SessionRecord> records);
    void recordsChanged() const;

    DocumentThread& m_thread;
    std::shared_ptr<HistoryFile> m_file;   // for the jobs alone
    std::shared_ptr<SessionStore*> m_self; // seen by completions as long as this lives
    RetryTimer m_retryTimer;
    Observer m_observer;
    std::vector<SessionRecord> m_sessions;
    FocusCounts m_focusCounts;
    std::vector<Unsaved> m_unsaved;
    std::uint64_t m_number = 0; // of the latest change
    std::optional<SessionStoreError> m_lastError;
    bool m_isLoaded = false;
    bool m_isAwaited = false;
    bool m_toldOfFetch = false;
    int m_attemptsInTheWay = 0; // of writing while a file that does not decode stands in the place
    int m_jobs = 0;
};

} // namespace brevlin
