#include "storage/history_file.h"

#include "storage/session_archive_scanner.h"
#include "storage/set_aside.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <span>
#include <utility>

namespace brevlin {

namespace {

constexpr const char* fileName = "sessions-v1.json";

bool endedEarlier(const SessionRecord& left, const SessionRecord& right)
{
    return left.endedAt < right.endedAt;
}

} // namespace

HistoryLocation defaultHistoryLocation(const std::string& dataFolder)
{
    return {dataFolder + "/Brevlin/" + fileName, dataFolder + "/Kestrove/" + fileName};
}

HistoryFile::HistoryFile(HistoryLocation location, DurableFile& files, const Clock& clock)
    : m_location(std::move(location)), m_files(files), m_clock(clock)
{}

// The file, or the one of the first release, which is copied; nothing where there is neither.
Expected<std::optional<HistoryFile::Found>, DocumentError> HistoryFile::find()
{
    auto content = m_files.readStamped(m_location.path);
    if (content && *content) {
        return std::optional{Found{std::move((*content)->bytes), (*content)->stamp}};
    }
    if (content && m_location.legacyPath) {
        content = m_files.readStamped(*m_location.legacyPath);
        if (content && *content) {
            // One that cannot be copied is read where it is; the first change writes it.
            const auto copied = m_files.write(m_location.path, (*content)->bytes);
            return std::optional{
                Found{std::move((*content)->bytes), copied ? std::optional{*copied} : std::nullopt}};
        }
    }
    return content
               ? std::optional<Found>{}
               : Expected<std::optional<Found>, DocumentError>{Unexpected{documentError(content.error())}};
}

HistoryFile::Records HistoryFile::load()
{
    if (auto scanned = scan(); !scanned || *scanned) {
        return scanned ? Records{**std::move(scanned)} : Records{Unexpected{scanned.error()}};
    }
    auto found = find();
    if (!found) {
        return Unexpected{found.error()};
    }
    Content content;
    Records result{std::vector<SessionRecord>{}};
    if (*found) {
        content.stamp = (*found)->stamp;
        result = decodeSessionArchive((*found)->bytes);
        if (!result && (m_isLoaded || !result.error().isAboutContent)) {
            return result;
        }
        content.isDamaged = !result && content.stamp;
    }
    m_content = std::move(content);
    m_isLoaded = true;
    if (result) {
        hold(*result);
    }
    return result;
}

// The records of the file in its place, if that has our form.
Expected<std::optional<std::vector<SessionRecord>>, DocumentError> HistoryFile::scan()
{
    using Scanned = Expected<std::optional<std::vector<SessionRecord>>, DocumentError>;
    const auto standing = m_files.stamp(m_location.path);
    if (!standing || !*standing) {
        return Scanned{std::nullopt};
    }
    SessionArchiveScanner scanner(static_cast<std::size_t>((*standing)->size));
    const auto stamp = m_files.readPieces(m_location.path,
                                          [&scanner](std::string_view piece) { return scanner.take(piece); });
    if (!stamp) {
        return Unexpected{documentError(stamp.error())};
    }
    auto records = scanner.finish();
    if (*stamp && records) {
        m_content = {};
        m_content.stamp = *stamp;
        m_content.inFile = records->size();
        m_isLoaded = true;
        hold(*records);
    }
    return Scanned{std::move(records)};
}

void HistoryFile::hold(const std::vector<SessionRecord>& records)
{
    m_content.records.reserve(records.size() + spareSessionRecords);
    m_content.records.assign(records.rbegin(), records.rend());
}

HistoryOutcome HistoryFile::apply(const HistoryChange& change)
{
    if (const auto* record = std::get_if<SessionRecord>(&change)) {
        if (const auto expressed = encodeSessionArchive({record, 1}); !expressed) {
            return {HistoryOutcome::Result::refused, expressed.error(), {}};
        }
        m_waiting.push_back(change);
        return flush(Patience::waits);
    }
    if (const auto* edit = std::get_if<EditRecords>(&change)) {
        if (const auto expressed = encodeSessionArchive(edit->placed); !expressed) {
            return {HistoryOutcome::Result::refused, expressed.error(), {}};
        }
    }
    // A removal that cannot be written now is taken back rather than tried again: what the user is told
    // would not hold any longer.
    Content before = m_content;
    m_waiting.push_back(change);
    HistoryOutcome outcome = flush(Patience::waits);
    if (outcome.result != HistoryOutcome::Result::saved) {
        m_content = std::move(before);
        if (!m_waiting.empty()) {
            m_waiting.pop_back();
        }
        outcome.result = HistoryOutcome::Result::refused;
        outcome.takenOver.clear();
        if (!outcome.error) {
            outcome.error = DocumentError{"The file has not been read yet", false};
        }
    }
    return outcome;
}

HistoryOutcome HistoryFile::flush(Patience patience)
{
    HistoryOutcome outcome;
    const auto wait = [&outcome](const DocumentError& error) {
        outcome.result = HistoryOutcome::Result::waits;
        outcome.error = error;
        return std::move(outcome);
    };
    if (!m_isLoaded) {
        outcome.result = HistoryOutcome::Result::waits;
        return outcome;
    }
    for (const HistoryChange& change : std::exchange(m_waiting, {})) {
        bring(change);
    }
    if (m_content.isSaved) {
        return outcome;
    }
    // A file system may give other stamps at each look; then the last look has to do.
    constexpr int mostLooks = 4;
    for (int look = 1;; ++look) {
        auto taken = takeOver(patience);
        if (!taken) {
            return wait(taken.error());
        }
        std::move(taken->begin(), taken->end(), std::back_inserter(outcome.takenOver));
        const auto written = write(look < mostLooks ? Overwrite::whatIsKnown : Overwrite::anything);
        if (!written) {
            return wait(written.error());
        }
        if (*written) {
            return outcome;
        }
    }
}

void HistoryFile::bring(const HistoryChange& change)
{
    if (const auto* record = std::get_if<SessionRecord>(&change)) {
        insert(*record);
    } else if (const auto* removal = std::get_if<RemoveRecord>(&change)) {
        remove(removal->id);
    } else if (const auto* several = std::get_if<EditRecords>(&change)) {
        edit(*several);
    } else {
        clear();
    }
    m_content.isSaved = false;
}

void HistoryFile::insert(const SessionRecord& record)
{
    std::vector<SessionRecord>& records = m_content.records;
    const auto replaced =
        std::erase_if(records, [&](const SessionRecord& other) { return other.id == record.id; });
    const auto position = std::lower_bound(records.begin(), records.end(), record, endedEarlier);
    if (replaced > 0 || position != records.end()) {
        m_content.inFile.reset();
    }
    records.insert(position, record);
}

void HistoryFile::remove(Uuid id)
{
    std::erase_if(m_content.records, [&](const SessionRecord& other) { return other.id == id; });
    m_content.removedIds.push_back(id);
    m_content.inFile.reset();
}

void HistoryFile::clear()
{
    m_content.removedIds = knownIds();
    m_content.records.clear();
    m_content.records.shrink_to_fit();
    m_content.inFile.reset();
}

void HistoryFile::edit(const EditRecords& change)
{
    std::vector<Uuid> gone = change.removed;
    for (const SessionRecord& record : change.placed) {
        gone.push_back(record.id);
    }
    std::sort(gone.begin(), gone.end());
    std::vector<SessionRecord>& records = m_content.records;
    std::erase_if(records, [&gone](const SessionRecord& record) {
        return std::binary_search(gone.begin(), gone.end(), record.id);
    });
    m_content.removedIds.insert(m_content.removedIds.end(), change.removed.begin(), change.removed.end());
    records.insert(records.begin(), change.placed.rbegin(), change.placed.rend());
    std::stable_sort(records.begin(), records.end(), endedEarlier);
    m_content.inFile.reset();
}

// Of every record that was ever here, sorted.
std::vector<Uuid> HistoryFile::knownIds() const
{
    std::vector<Uuid> ids = m_content.removedIds;
    for (const SessionRecord& record : m_content.records) {
        ids.push_back(record.id);
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

// Gives the records that were not here before.
HistoryFile::Records HistoryFile::takeOver(Patience patience)
{
    const auto stamp = m_files.stamp(m_location.path);
    if (!stamp) {
        return Unexpected{documentError(stamp.error())};
    }
    if (*stamp == m_content.stamp) {
        return std::vector<SessionRecord>{};
    }
    m_content.inFile.reset();
    const auto file = m_files.readStamped(m_location.path);
    if (!file) {
        return Unexpected{documentError(file.error())};
    }
    if (!*file) {
        m_content.stamp.reset();
        m_content.isDamaged = false;
        return std::vector<SessionRecord>{};
    }
    auto found = decodeSessionArchive((*file)->bytes);
    if (!found) {
        const bool isHopeless = m_content.isDamaged || patience == Patience::ended;
        if (!found.error().isAboutContent || !isHopeless) {
            return found;
        }
        m_content.isDamaged = true;
        m_content.stamp = (*file)->stamp;
        return std::vector<SessionRecord>{};
    }
    const std::vector<Uuid> known = knownIds();
    std::erase_if(*found, [&known](const SessionRecord& record) {
        return std::binary_search(known.begin(), known.end(), record.id);
    });
    if (!found->empty()) {
        // Theirs stand in the file behind those of ours that end at the same instant.
        m_content.records.insert(m_content.records.begin(), found->rbegin(), found->rend());
        std::stable_sort(m_content.records.begin(), m_content.records.end(), endedEarlier);
    }
    m_content.isDamaged = false;
    m_content.stamp = (*file)->stamp;
    return found;
}

// Gives false where somebody else has replaced the file meanwhile: it is to be looked at again.
Expected<bool, DocumentError> HistoryFile::write(Overwrite overwrite)
{
    if (m_content.isDamaged) {
        if (const auto kept = setAsideFile(m_files, m_location.path, m_clock.now()); !kept) {
            return Unexpected{documentError(kept.error())};
        }
        m_content.isDamaged = false;
        m_content.stamp.reset();
    }
    const std::span<const SessionRecord> records = m_content.records;
    const bool keepsFile = canKeepFile(overwrite);
    const auto text = keepsFile ? encodeSessionArchiveStart(records.subspan(*m_content.inFile))
                                : encodeSessionArchive(records, RecordOrder::latestLast);
    if (!text) {
        return Unexpected{text.error()};
    }
    const auto written =
        keepsFile
            ? m_files.replaceStart(m_location.path, *text, sessionArchiveOpening.size(), *m_content.stamp)
        : overwrite == Overwrite::anything ? m_files.write(m_location.path, *text)
                                           : m_files.replace(m_location.path, *text, m_content.stamp);
    if (!written) {
        // The file itself may be what cannot be read: the next attempt is made of what is here.
        m_content.inFile.reset();
        return written.error().code == ESTALE
                   ? Expected<bool, DocumentError>{false}
                   : Expected<bool, DocumentError>{Unexpected{documentError(written.error())}};
    }
    m_content.stamp = *written;
    m_content.inFile = records.size();
    m_content.isSaved = true;
    return true;
}

bool HistoryFile::canKeepFile(Overwrite overwrite) const
{
    // An empty history's text has no place for the comma.
    return overwrite == Overwrite::whatIsKnown && m_content.stamp && m_content.inFile.value_or(0) > 0;
}

} // namespace brevlin
