#pragma once

#include "core/expected.h"
#include "core/finished_session.h"
#include "core/session_record.h"
#include "platform/clock.h"
#include "platform/durable_file.h"
#include "storage/document_error.h"
#include "storage/session_archive.h"
#include "storage/session_store_error.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// Where the history is kept. Paths are absolute.
struct HistoryLocation
{
    std::string path;
    /// The history of the first release, which is copied once; only for the standard location.
    std::optional<std::string> legacyPath;
};

/// The standard location below the user's folder for application data ($XDG_DATA_HOME).
HistoryLocation defaultHistoryLocation(const std::string& dataFolder);

/// The history: all records in memory, and in one file that is written in full by every change. The records
/// are always sorted by endedAt, latest first, stable. A change that could not be saved is taken back, and
/// one that was acknowledged survives a power cut. A history that could not be read is set aside before the
/// first change replaces it.
class SessionStore final
{
public:
    /// Reads the history unless told otherwise; lastError() tells of a failure. The clock names what is set
    /// aside.
    SessionStore(HistoryLocation location, DurableFile& files, const Clock& clock, bool fetchOnInit = true);

    const std::vector<SessionRecord>& sessions() const { return m_sessions; }
    /// The failure of the most recent operation; nothing after a success.
    const std::optional<SessionStoreError>& lastError() const { return m_lastError; }

    /// Reads the file again; a failure leaves the records as they are.
    void refresh();
    /// Records the phase, in place of any record with the same id. Gives nothing when it could not be saved.
    std::optional<SessionRecord> insert(const FinishedSession& finishedSession);
    /// Removes every record with this record's id; false when the change could not be saved.
    bool remove(const SessionRecord& record);
    /// Removes all records; false when the change could not be saved.
    bool clear();

private:
    enum class Change { newFirst, any };

    struct TakenRecord
    {
        std::size_t index;
        SessionRecord record;
    };

    void migrateLegacyArchiveIfNeeded();
    Expected<std::vector<SessionRecord>, DocumentError> readArchive();
    Expected<void, DocumentError> saveArchive(Change change);
    bool save(SessionStoreError::Operation operation, Change change);
    void fail(SessionStoreError::Operation operation, std::string description);
    std::vector<TakenRecord> takeRecords(Uuid id);
    void putBack(std::vector<TakenRecord> taken);

    HistoryLocation m_location;
    DurableFile& m_files;
    const Clock& m_clock;
    std::vector<SessionRecord> m_sessions;
    SessionArchiveText m_text; // of m_sessions as they were saved last
    std::optional<SessionStoreError> m_lastError;
    bool m_fileIsUnreadable = false;
};

} // namespace brevlin
