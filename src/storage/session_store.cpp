#include "storage/session_store.h"

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

using Operation = SessionStoreError::Operation;
using Result = HistoryOutcome::Result;

std::vector<Uuid> idsOf(const std::vector<SessionRecord>& some, const std::vector<SessionRecord>& others)
{
    std::vector<Uuid> ids;
    ids.reserve(some.size() + others.size());
    for (const auto* records : {&some, &others}) {
        for (const SessionRecord& record : *records) {
            ids.push_back(record.id);
        }
    }
    return ids;
}

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
        takeRecords(idsOf(unsaved.removed, unsaved.placed));
        placeAll(unsaved.placed);
    }
}

SessionRecord SessionStore::insert(const FinishedSession& finishedSession)
{
    SessionRecord record(finishedSession);
    std::vector<SessionRecord> replaced = takeRecords({record.id});
    place(record);
    postChange(record, Operation::insert, std::move(replaced), {record});
    return record;
}

void SessionStore::remove(const SessionRecord& record)
{
    const Uuid id = record.id; // the record may be one in the list
    postChange(RemoveRecord{id}, Operation::delete_, takeRecords({id}));
}

std::uint64_t SessionStore::edit(const std::vector<Uuid>& removed, std::vector<SessionRecord> placed)
{
    std::vector<Uuid> ids = removed;
    for (const SessionRecord& record : placed) {
        ids.push_back(record.id);
    }
    std::vector<SessionRecord> taken = takeRecords(std::move(ids));
    placeAll(placed);
    std::vector<Uuid> takenIds = idsOf(taken, {});
    std::sort(takenIds.begin(), takenIds.end());
    const bool isRemoval =
        placed.size() < taken.size() &&
        std::all_of(placed.begin(), placed.end(), [&takenIds](const SessionRecord& record) {
            return std::binary_search(takenIds.begin(), takenIds.end(), record.id);
        });
    const Operation operation = isRemoval ? Operation::delete_ : Operation::edit;
    EditRecords change{removed, placed};
    postChange(std::move(change), operation, std::move(taken), std::move(placed));
    return m_number;
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

void SessionStore::postChange(HistoryChange change, Operation operation, std::vector<SessionRecord> removed,
                              std::vector<SessionRecord> placed)
{
    const std::uint64_t number = ++m_number;
    m_unsaved.push_back({number, operation, std::move(removed), std::move(placed)});
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
    const bool isCleared = operation == Operation::clear && outcome.result == Result::saved;
    settle(number, outcome);
    if (isCleared && m_observer.wasCleared) {
        m_observer.wasCleared();
    }
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
    bool isNewWritten = false;
    if (outcome.result == Result::saved) {
        isNewWritten = std::any_of(m_unsaved.begin(), m_unsaved.end(), [number](const Unsaved& unsaved) {
            return unsaved.number <= number && unsaved.operation == Operation::insert;
        });
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
    if (isNewWritten && m_observer.recordsWritten) {
        m_observer.recordsWritten();
    }
}

void SessionStore::takeBack(std::uint64_t number)
{
    const auto found = std::find_if(m_unsaved.begin(), m_unsaved.end(),
                                    [number](const Unsaved& u) { return u.number == number; });
    const Unsaved unsaved = std::move(*found);
    m_unsaved.erase(found);
    takeRecords(idsOf(unsaved.placed, {}));
    placeAll(unsaved.removed);
    if (m_observer.editTakenBack) {
        m_observer.editTakenBack(number);
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
std::vector<SessionRecord> SessionStore::takeRecords(std::vector<Uuid> ids)
{
    std::vector<SessionRecord> taken;
    std::sort(ids.begin(), ids.end());
    const auto isKept = [&ids](const SessionRecord& record) {
        return !std::binary_search(ids.begin(), ids.end(), record.id);
    };
    const auto firstTaken = std::find_if_not(m_sessions.begin(), m_sessions.end(), isKept);
    auto kept = firstTaken;
    for (auto record = firstTaken; record != m_sessions.end(); ++record) {
        if (isKept(*record)) {
            *kept++ = std::move(*record);
        } else {
            m_focusCounts.remove(*record);
            taken.push_back(std::move(*record));
        }
    }
    m_sessions.erase(kept, m_sessions.end());
    return taken;
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
