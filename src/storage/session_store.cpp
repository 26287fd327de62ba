#include "storage/session_store.h"

#include "storage/set_aside.h"

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

using Operation = SessionStoreError::Operation;

constexpr std::string_view fileName = "sessions-v1.json";

std::string promiseToKeep(const std::string& path)
{
    return "。文件“" + path + "”会原样保留：下次保存前将改名为“sessions-v1.unreadable-（UTC 时间）.json”。";
}

} // namespace

HistoryLocation defaultHistoryLocation(const std::string& dataFolder)
{
    return {dataFolder + "/Brevlin/" + std::string(fileName),
            dataFolder + "/Kestrove/" + std::string(fileName)};
}

SessionStore::SessionStore(HistoryLocation location, DurableFile& files, const Clock& clock, bool fetchOnInit)
    : m_location(std::move(location)), m_files(files), m_clock(clock)
{
    if (fetchOnInit) {
        migrateLegacyArchiveIfNeeded();
        refresh();
    }
}

void SessionStore::migrateLegacyArchiveIfNeeded()
{
    if (!m_location.legacyPath || m_files.exists(m_location.path)) {
        return;
    }
    const auto legacy = m_files.read(*m_location.legacyPath);
    if (!legacy) {
        fail(Operation::fetch, documentError(legacy.error()).description);
    } else if (*legacy) {
        if (const auto copied = m_files.write(m_location.path, **legacy); !copied) {
            fail(Operation::fetch, documentError(copied.error()).description);
        }
    }
}

void SessionStore::refresh()
{
    auto sessions = readArchive();
    if (sessions) {
        m_sessions = *std::move(sessions);
        m_text.forget();
        m_lastError.reset();
    } else {
        fail(Operation::fetch, sessions.error().description);
    }
}

Expected<std::vector<SessionRecord>, DocumentError> SessionStore::readArchive()
{
    const std::string* path = &m_location.path;
    auto document = m_files.read(*path);
    if (document && !*document && m_location.legacyPath) {
        path = &*m_location.legacyPath;
        document = m_files.read(*path);
    }
    m_fileIsUnreadable = false;
    if (document && !*document) {
        return std::vector<SessionRecord>{};
    }
    auto sessions = document ? decodeSessionArchive(**document)
                             : Expected<std::vector<SessionRecord>, DocumentError>{
                                   Unexpected{documentError(document.error())}};
    if (sessions) {
        return sessions;
    }
    std::string description = sessions.error().description;
    // Nothing is ever written to the legacy path, so what stands there needs no promise.
    if (path == &m_location.path) {
        m_fileIsUnreadable = true;
        description += promiseToKeep(*path);
    }
    return Unexpected{DocumentError{std::move(description)}};
}

std::optional<SessionRecord> SessionStore::insert(const FinishedSession& finishedSession)
{
    SessionRecord record(finishedSession);
    std::vector<TakenRecord> replaced = takeRecords(record.id);
    // Where appending and stable sorting would put it: behind the records of the same instant.
    const auto place = std::upper_bound(m_sessions.begin(), m_sessions.end(), record, endedLater);
    const auto inserted = m_sessions.insert(place, record);
    const auto offset = inserted - m_sessions.begin();
    const bool isFirst = offset == 0 && replaced.empty();
    if (!save(Operation::insert, isFirst ? Change::newFirst : Change::any)) {
        m_sessions.erase(m_sessions.begin() + offset);
        putBack(std::move(replaced));
        return std::nullopt;
    }
    return record;
}

bool SessionStore::remove(const SessionRecord& record)
{
    std::vector<TakenRecord> taken = takeRecords(record.id);
    if (!save(Operation::delete_, Change::any)) {
        putBack(std::move(taken));
        return false;
    }
    return true;
}

bool SessionStore::clear()
{
    std::vector<SessionRecord> kept = std::exchange(m_sessions, {});
    if (!save(Operation::clear, Change::any)) {
        m_sessions = std::move(kept);
        return false;
    }
    return true;
}

bool SessionStore::save(Operation operation, Change change)
{
    const auto saved = saveArchive(change);
    if (!saved) {
        m_text.forget();
        fail(operation, saved.error().description);
        return false;
    }
    m_lastError.reset();
    return true;
}

Expected<void, DocumentError> SessionStore::saveArchive(Change change)
{
    const auto document =
        change == Change::newFirst ? m_text.encodeWithNewFirst(m_sessions) : m_text.encode(m_sessions);
    if (!document) {
        return Unexpected{document.error()};
    }
    if (m_fileIsUnreadable) {
        if (const auto kept = setAsideFile(m_files, m_location.path, m_clock.now()); !kept) {
            return Unexpected{documentError(kept.error())};
        }
        m_fileIsUnreadable = false;
    }
    if (const auto written = m_files.write(m_location.path, *document); !written) {
        return Unexpected{documentError(written.error())};
    }
    return {};
}

void SessionStore::fail(Operation operation, std::string description)
{
    m_lastError = SessionStoreError{Uuid::random(), operation, std::move(description)};
}

// The id comes by value: it may be that of a record in the list. Records are taken out one by one, so that
// they can be put back: copying a history of years for the rare failure would cost more than the change
// itself.
std::vector<SessionStore::TakenRecord> SessionStore::takeRecords(Uuid id)
{
    std::vector<TakenRecord> taken;
    for (std::size_t index = m_sessions.size(); index-- > 0;) {
        if (m_sessions[index].id == id) {
            taken.push_back({index, std::move(m_sessions[index])});
            m_sessions.erase(m_sessions.begin() + static_cast<std::ptrdiff_t>(index));
        }
    }
    return taken;
}

// In the opposite order of taking: each index is then what it was.
void SessionStore::putBack(std::vector<TakenRecord> taken)
{
    while (!taken.empty()) {
        m_sessions.insert(m_sessions.begin() + static_cast<std::ptrdiff_t>(taken.back().index),
                          std::move(taken.back().record));
        taken.pop_back();
    }
}

} // namespace brevlin
