#pragma once

#include "core/expected.h"
#include "core/session_record.h"
#include "core/uuid.h"
#include "platform/clock.h"
#include "platform/durable_file.h"
#include "storage/document_error.h"
#include "storage/session_archive.h"

#include <optional>
#include <string>
#include <variant>
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

struct RemoveRecord
{
    Uuid id;
};
struct ClearRecords
{};
/// Several at once: the ones with these ids go, and the placed ones come, each behind those that end at the
/// same instant, in their order.
struct EditRecords
{
    std::vector<Uuid> removed;
    std::vector<SessionRecord> placed;
};
/// A record is put in place of any with its id, behind those that end at the same instant.
using HistoryChange = std::variant<SessionRecord, RemoveRecord, ClearRecords, EditRecords>;

/// What became of a change of the history.
struct HistoryOutcome
{
    enum class Result {
        saved,  ///< it is on the disk, and so is every change before it that waited
        waits,  ///< the disk refused, so far
        refused ///< it was taken back: what cannot be expressed, and a removal or an edit that could not be
                ///< written
    };

    Result result = Result::saved;
    std::optional<DocumentError> error;
    /// Records that somebody else has put into the file; they are the history's from now on.
    std::vector<SessionRecord> takenOver;
};

/// The history on the disk, for the thread that writes it. Holds all records, which are less than their text,
/// and writes the whole file with each change: nearly always a new record and behind it what the file holds
/// already. What others have written into the
/// file meanwhile is kept: records whose ids were never here are taken over before a write.
class HistoryFile final
{
public:
    /// Whether a file that does not decode is given time, because a program that synchronises folders may be
    /// copying it right now, as long as its content of before is held here.
    enum class Patience { waits, ended };

    HistoryFile(HistoryLocation location, DurableFile& files, const Clock& clock);

    const std::string& path() const { return m_location.path; }
    /// All records, latest end first. After a failure changes wait until the file could be read, unless it
    /// was read and does not decode: it is then set aside by the first change.
    Expected<std::vector<SessionRecord>, DocumentError> load();
    HistoryOutcome apply(const HistoryChange& change);
    /// Writes what waits, if anything.
    HistoryOutcome flush(Patience patience);

private:
    struct Content
    {
        std::vector<SessionRecord> records; // the other way round than in the file: new ones go to the back
        std::vector<Uuid> removedIds;
        std::optional<FileStamp> stamp; // of the file when it was read or written last; none: no file
        // So many of the records, from the front, are the whole content of the file with this stamp, in our
        // form; else it has to be written anew.
        std::optional<std::size_t> inFile;
        bool isDamaged = false; // the file with this stamp does not decode
        bool isSaved = true;
    };
    struct Found
    {
        std::string bytes;
        std::optional<FileStamp> stamp;
    };
    using Records = Expected<std::vector<SessionRecord>, DocumentError>;

    Expected<std::optional<Found>, DocumentError> find();
    Expected<std::optional<std::vector<SessionRecord>>, DocumentError> scan();
    void hold(const std::vector<SessionRecord>& records);
    void bring(const HistoryChange& change);
    void insert(const SessionRecord& record);
    void remove(Uuid id);
    void clear();
    void edit(const EditRecords& change);
    std::vector<Uuid> knownIds() const;
    Records takeOver(Patience patience);
    enum class Overwrite { whatIsKnown, anything };
    Expected<bool, DocumentError> write(Overwrite overwrite);
    bool canKeepFile(Overwrite overwrite) const;

    HistoryLocation m_location;
    DurableFile& m_files;
    const Clock& m_clock;
    Content m_content;
    bool m_isLoaded = false;
    std::vector<HistoryChange> m_waiting; // for the file to be read
};

} // namespace brevlin
