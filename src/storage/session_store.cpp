#include "storage/session_store.h"

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

using Operation = SessionStoreError::Operation;
using Result = HistoryOutcome::Result;

} // namespace

SessionStore::SessionStore(HistoryLocation location, const HistoryDisk& disk, bool fetchOnInit)
    : m_thread(disk.thread)
    , m_file(std::make_shared<HistoryFile>(std::move(location), disk.files, disk.clock))
    , m_self(std::make_shared<SessionStore*>(this))
    , m_retryTimer(disk.scheduler, [this] { retry(); })
{
    if (fetchOnInit) {
        m_isAwaited = true;
        refresh();
    }
}

// What failed before anybody listened is told now.
void SessionStore::setObserver(Observer observer)
{
    m_observer = std::move(observer);
    if (m_lastError && m_observer.failed) {
        m_observer.failed(*m_lastError);
    }
}

std::size_t SessionStore::unsavedCount() const
{
    return static_cast<std::size_t>(
        std::count_if(m_unsaved.begin(), m_unsaved.end(),
                      [](const Unsaved& unsaved) { return unsaved.operation == Operation::insert; }));
}

void SessionStore::refresh()
{
    ++m_jobs;
    m_thread.post([file = m_file, self = std::weak_ptr(m_self)]() -> DocumentThread::Completion {
        // Shared, because a function has to be copyable.
        auto loaded = std::make_shared<Expected<std::vector<SessionRecord>, DocumentError>>(file->load());
        return [self, loaded] {
            if (const auto store = self.lock()) {
                (*store)->finishLoad(std::move(*loaded));
            }
        };
    });
}

void SessionStore::finishLoad(Expected<std::vector<SessionRecord>, DocumentError> loaded)
{
    --m_jobs;
    const bool wasAwaited = std::exchange(m_isAwaited, false);
    if (!loaded) {
        const DocumentError& error = loaded.error();
        m_isLoaded = m_isLoaded || error.isAboutContent;
        if (wasAwaited) {
            recordsChanged();
        }
        fail(Operation::fetch, error, error.isAboutContent || !std::exchange(m_toldOfFetch, true));
        if (!error.isAboutContent) {
            m_retryTimer.failed();
            return;
        }
    } else {
        m_isLoaded = true;
        m_lastError.reset();
        m_sessions = std::move(*loaded);
        m_focusCounts = FocusCounts(m_sessions);
        joinUnsaved();
        recordsChanged();
    }
    m_retryTimer.succeeded();
    retry();
}

void SessionStore::joinUnsaved()
{
    for (const Unsaved& unsaved : m_unsaved) {
        for (const SessionRecord& record : unsaved.records) {
            std::vector<SessionRecord> replaced;
            takeRecords(record.id, replaced);
            if (unsaved.operation == Operation::insert) {
                place(record);
            }
        }
    }
}

SessionRecord SessionStore::insert(const FinishedSession& finishedSession)
{
    SessionRecord record(finishedSession);
    std::vector<SessionRecord> replaced;
    takeRecords(record.id, replaced);
    place(record);
    postChange(record, Operation::insert, {record});
    return record;
}

void SessionStore::remove(const SessionRecord& record)
{
    const Uuid id = record.id; // the record may be one in the list
    std::vector<SessionRecord> taken;
    takeRecords(id, taken);
    postChange(RemoveRecord{id}, Operation::delete_, std::move(taken));
}

void SessionStore::clear()
{
    if (!m_isLoaded) {
        fail(Operation::clear,
             m_lastError ? DocumentError{m_lastError->underlyingDescription} : DocumentError{}, true);
        return;
    }
    m_focusCounts = {};
    postChange(ClearRecords{}, Operation::clear, std::exchange(m_sessions, {}));
}

void SessionStore::postChange(HistoryChange change, Operation operation, std::vector<SessionRecord> records)
{
    const std::uint64_t number = ++m_number;
    m_unsaved.push_back({number, operation, std::move(records)});
    ++m_jobs;
    m_thread.post([file = m_file, self = std::weak_ptr(m_self), change = std::move(change),
                   number]() -> DocumentThread::Completion {
        return [self, number, outcome = file->apply(change)] {
            if (const auto store = self.lock()) {
                (*store)->finishChange(number, outcome);
            }
        };
    });
}

void SessionStore::retry(HistoryFile::Patience patience)
{
    if (m_jobs > 0) {
        return;
    }
    if (!m_isLoaded) {
        refresh();
    } else if (!m_unsaved.empty()) {
        ++m_jobs;
        m_thread.post([file = m_file, self = std::weak_ptr(m_self), patience,
                       number = m_number]() -> DocumentThread::Completion {
            return [self, number, outcome = file->flush(patience)] {
                if (const auto store = self.lock()) {
                    (*store)->finishRetry(number, outcome);
                }
            };
        });
    }
}

void SessionStore::finishChange(std::uint64_t number, HistoryOutcome outcome)
{
    --m_jobs;
    const auto unsaved = std::find_if(m_unsaved.begin(), m_unsaved.end(),
                                      [number](const Unsaved& u) { return u.number == number; });
    const Operation operation = unsaved->operation;
    if (outcome.result == Result::refused) {
        takeBack(number);
    }
    settle(number, outcome);
    if (outcome.error) {
        // A file that is being copied is soon a whole one.
        const bool isInTheWay = outcome.result == Result::waits && outcome.error->isAboutContent;
        fail(operation, *outcome.error, !isInTheWay);
    }
}

void SessionStore::finishRetry(std::uint64_t number, HistoryOutcome outcome)
{
    --m_jobs;
    settle(number, outcome);
    if (outcome.error) {
        constexpr int mostSilentAttempts = 4;
        const bool isInTheWay = outcome.error->isAboutContent;
        fail(Operation::insert, *outcome.error, isInTheWay && ++m_attemptsInTheWay == mostSilentAttempts);
    }
}

// The changes up to this one are on the disk, or are still to be written.
void SessionStore::settle(std::uint64_t number, HistoryOutcome& outcome)
{
    if (outcome.result == Result::saved) {
        std::erase_if(m_unsaved, [number](const Unsaved& unsaved) { return unsaved.number <= number; });
        m_lastError.reset();
        m_attemptsInTheWay = 0;
        m_retryTimer.succeeded();
    } else if (!m_unsaved.empty() && m_isLoaded) {
        m_retryTimer.failed();
    }
    if (!outcome.takenOver.empty()) {
        placeAll(std::move(outcome.takenOver));
        recordsChanged();
    }
}

void SessionStore::takeBack(std::uint64_t number)
{
    const auto unsaved = std::find_if(m_unsaved.begin(), m_unsaved.end(),
                                      [number](const Unsaved& u) { return u.number == number; });
    std::vector<SessionRecord> records = std::move(unsaved->records);
    const bool wasInserted = unsaved->operation == Operation::insert;
    m_unsaved.erase(unsaved);
    if (wasInserted) {
        std::vector<SessionRecord> taken;
        takeRecords(records.front().id, taken);
    } else {
        placeAll(std::move(records));
    }
    recordsChanged();
}

void SessionStore::fail(Operation operation, const DocumentError& error, bool tells)
{
    m_lastError = SessionStoreError{Uuid::random(), operation, error.description};
    if (tells && m_observer.failed) {
        m_observer.failed(*m_lastError);
    }
}

// Keeps the order of the others.
void SessionStore::takeRecords(Uuid id, std::vector<SessionRecord>& taken)
{
    for (std::size_t index = 0; index < m_sessions.size();) {
        if (m_sessions[index].id == id) {
            m_focusCounts.remove(m_sessions[index]);
            taken.push_back(std::move(m_sessions[index]));
            m_sessions.erase(m_sessions.begin() + static_cast<std::ptrdiff_t>(index));
        } else {
            ++index;
        }
    }
}

// Where appending and stable sorting would put it: behind the records of the same instant.
void SessionStore::place(SessionRecord record)
{
    m_focusCounts.add(record);
    const auto position = std::upper_bound(m_sessions.begin(), m_sessions.end(), record, endedLater);
    m_sessions.insert(position, std::move(record));
}

void SessionStore::placeAll(std::vector<SessionRecord> records)
{
    if (records.size() == 1) {
        place(std::move(records.front()));
        return;
    }
    for (const SessionRecord& record : records) {
        m_focusCounts.add(record);
    }
    m_sessions.insert(m_sessions.end(), std::make_move_iterator(records.begin()),
                      std::make_move_iterator(records.end()));
    std::stable_sort(m_sessions.begin(), m_sessions.end(), endedLater);
}

void SessionStore::recordsChanged() const
{
    if (m_observer.recordsChanged) {
        m_observer.recordsChanged();
    }
}

} // namespace brevlin
