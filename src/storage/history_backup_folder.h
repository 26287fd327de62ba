#pragma once

#include "core/calendar.h"
#include "core/expected.h"
#include "core/session_details.h"
#include "core/session_record.h"
#include "platform/durable_file.h"
#include "storage/document_error.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace brevlin {

/// What is copied, and the folder for the copies. Paths are absolute.
struct BackupPaths
{
    std::string history;
    std::string details;
    std::string folder;
};

/// What a copy holds.
struct HistoryBackup
{
    std::vector<SessionRecord> records; ///< latest end first
    SessionDetailsById details;
};

/// Copies of the history and its details, one of a day, for the thread that writes the documents. A copy is
/// "sessions-2026-01-31.json" and, where there are any, "details-2026-01-31.json", which is written before
/// and removed after: a day has a copy as soon as, and as long as, the first of the two is there.
class HistoryBackupFolder final
{
public:
    static constexpr std::size_t keptDays = 7;
    static constexpr std::size_t keptMonths = 12;

    HistoryBackupFolder(BackupPaths paths, DurableFile& files);

    /// Copies both files as they are, unless the day has a whole copy, and removes the copies that are not
    /// kept any more. A history that does not decode is not copied.
    Expected<void, DocumentError> make(LocalDay today);
    /// That have a copy, whole or not; the latest first.
    Expected<std::vector<LocalDay>, DocumentError> days() const;
    /// How many records the day's copy has; an error where it is not whole.
    Expected<std::size_t, DocumentError> count(LocalDay day) const;
    Expected<HistoryBackup, DocumentError> read(LocalDay day) const;
    /// Removes every copy.
    Expected<void, DocumentError> clear();

private:
    std::string path(const char* kind, LocalDay day) const;
    Expected<void, DocumentError> copy(const std::string& from, const std::string& to);
    Expected<void, DocumentError> copyDetails(LocalDay today);
    Expected<void, DocumentError> remove(const std::vector<LocalDay>& days);
    Expected<std::vector<LocalDay>, DocumentError> daysOf(const char* kind) const;

    BackupPaths m_paths;
    DurableFile& m_files;
};

/// The days whose copies are kept when one of `today` has been made, of those given, latest first: the latest
/// seven, and the last of each of the latest twelve months that have any. Those of days to come, which a
/// wrong clock left, stay and count for nothing.
std::vector<LocalDay> keptBackups(const std::vector<LocalDay>& days, LocalDay today);

} // namespace brevlin
