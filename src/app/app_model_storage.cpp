#include "app/app_model.h"

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

constexpr BilingualText timerStateReset{"计时状态已重置", "Timer state reset"};
constexpr BilingualText timerStateResetDetail{
    "上次保存的计时状态无法读取，已安全恢复为默认状态。",
    "The previous timer state could not be read and was safely reset."};
constexpr BilingualText timerStateUnread{"计时状态读取失败", "Failed to load timer state"};
constexpr BilingualText timerStateNotSaved{"计时状态保存失败", "Failed to save timer state"};
constexpr BilingualText historyUnread{"本地记录读取失败", "Failed to load local history"};
constexpr BilingualText recordNotSaved{"记录保存失败", "Failed to save record"};
constexpr BilingualText recordNotDeleted{"无法删除记录", "Unable to delete record"};
constexpr BilingualText historyNotCleared{"无法清空记录", "Unable to clear history"};
// In both languages, because the choice of one is among what could not be read.
constexpr std::string_view preferencesUnread = "偏好设置读取失败 · Failed to load preferences";

// What the user can count on, behind the system's own words.
constexpr BilingualText isReadAgain{
    "文件会原样保留，稍后会再次读取；在此之前不会写入。",
    "The file stays as it is and is read again; until then nothing is written to it."};
constexpr BilingualText recordsWait{
    "文件会原样保留，稍后会再次读取；新记录会先留在内存中，读取成功后再一并保存。",
    "The file stays as it is and is read again; new records wait in memory and join "
    "the others once it could be read."};
constexpr BilingualText isWrittenAgain{"稍后会自动重试保存。", "Saving is tried again."};
constexpr BilingualText recordIsKept{"记录仍保留在历史中，稍后会自动重试保存。",
                                     "The record stays in the history, and saving is tried again."};

std::string sentences(const std::string& systemsWords, std::string_view ours, AppLanguage language)
{
    return systemsWords + (language == AppLanguage::english ? ". " : "。") + std::string(ours);
}

std::string promiseToKeep(const std::string& path, AppLanguage language)
{
    return language == AppLanguage::english
               ? "The file “" + path + "” is kept as it is: before the next save it is renamed to " +
                     "“sessions-v1.unreadable-(UTC time).json”."
               : "文件“" + path +
                     "”会原样保留：下次保存前将改名为“sessions-v1.unreadable-（UTC 时间）.json”。";
}

} // namespace

void AppModel::restore()
{
    m_preferences = m_parts.preferencesStore->load();
    m_startPreferences = m_preferences;
    if (const auto& error = m_parts.preferencesStore->readError()) {
        m_messages.push_back(
            {Uuid::random(), std::string(preferencesUnread),
             sentences(error->description, isReadAgain.simplifiedChinese, AppLanguage::simplifiedChinese) +
                 " " + std::string(isReadAgain.english)});
    }
    std::optional<TimerSnapshot> restored = restoreTimer();
    connectStores();
    m_parts.notificationService->setLanguage(language());

    const bool wasRunning = restored && restored->runState == TimerRunState::running;
    m_engine.emplace(m_preferences.timerSettings, std::move(restored),
                     [this] { return m_parts.clock.timeZone()->identifier(); });
    m_snapshot = m_engine->snapshot();
    m_remainingSeconds = m_snapshot.remainingSeconds(now());
    m_launchAtLoginStatus = m_parts.launchAtLoginService->status();
    m_startUpTask = m_parts.scheduler.after(
        Seconds::zero(), [this, wasRunning] { refreshSystemStateAndReconcile(wasRunning); });
}

std::optional<TimerSnapshot> AppModel::restoreTimer()
{
    const auto stored = m_parts.activeTimerPersistence->load();
    if (stored) {
        return *stored;
    }
    if (stored.error().isAboutContent) {
        // Keeps what could not be read under another name; should that fail, the next save tries again.
        m_parts.activeTimerPersistence->clear();
        raise(timerStateReset, std::string{timerStateResetDetail.in(language())});
    } else {
        raise(timerStateUnread,
              sentences(stored.error().description, isReadAgain.in(language()), language()));
    }
    return std::nullopt;
}

void AppModel::connectStores()
{
    m_parts.preferencesStore->setWasReadObserver(
        [this](const AppPreferences& stored) { takePreferences(stored); });
    m_parts.activeTimerPersistence->setObserver(
        {[this](const ActiveTimerPersistence::Loaded& stored) { takeTimer(stored); },
         [this](const DocumentError& error) {
             raise(timerStateNotSaved,
                   sentences(error.description, isWrittenAgain.in(language()), language()));
         }});
    m_parts.sessionStore->setObserver({[this] { Q_EMIT sessionsChanged(); },
                                       [this](const SessionStoreError& error) {
                                           tellOfHistory(error);
                                       }});
}

// The preferences could not be read at the start and can be now.
void AppModel::takePreferences(const AppPreferences& stored)
{
    const AppPreferences all = joined(stored, m_startPreferences, m_preferences);
    m_startPreferences = stored;
    if (all != stored) {
        changePreferences([&](AppPreferences& preferences) { preferences = all; });
    } else {
        adopt(all);
    }
}

// The timer could not be read at the start and can be now.
void AppModel::takeTimer(const ActiveTimerPersistence::Loaded& stored)
{
    if (!stored) {
        raise(timerStateReset, std::string{timerStateResetDetail.in(language())});
    } else if (*stored && m_snapshot == freshSnapshot(m_preferences.timerSettings)) {
        m_engine.emplace(m_preferences.timerSettings, **stored,
                         [this] { return m_parts.clock.timeZone()->identifier(); });
        apply({m_engine->snapshot(), std::nullopt}, TimerSnapshot(m_snapshot), AskForPermission::no);
        reconcile((*stored)->runState == TimerRunState::running);
    } else if (*stored) {
        recordSuperseded(**stored);
    }
}

// The user has gone on without the stored phase: it ended when the new one began, unless it was over by then.
void AppModel::recordSuperseded(const TimerSnapshot& stored)
{
    TimerEngine engine(m_preferences.timerSettings, stored,
                       [this] { return m_parts.clock.timeZone()->identifier(); });
    const Instant end = m_snapshot.startedAt.value_or(now());
    TimerTransition transition = engine.reconcile(end, true);
    if (!transition.finishedSession) {
        transition = engine.endEarly(end);
    }
    if (transition.finishedSession) {
        recordFinishedSession(*transition.finishedSession);
    }
}

void AppModel::save(const TimerSnapshot& snapshot)
{
    // Every activation of a window reconciles; what is on the disk already is not written again.
    if (m_savedSnapshot == snapshot) {
        return;
    }
    if (const auto saved = m_parts.activeTimerPersistence->save(snapshot)) {
        m_savedSnapshot = snapshot;
    } else {
        raise(timerStateNotSaved, saved.error().description);
    }
    retryWrites(); // where there is room for this there may be room for more
}

void AppModel::recordFinishedSession(const FinishedSession& finished)
{
    m_parts.sessionStore->insert(finished);
    Q_EMIT sessionsChanged();
}

void AppModel::tellOfHistory(const SessionStoreError& error)
{
    using Operation = SessionStoreError::Operation;
    const std::string description = error.errorDescription();
    switch (error.operation) {
    case Operation::fetch:
        raise(historyUnread, sentences(description,
                                       m_parts.sessionStore->isLoaded()
                                           ? promiseToKeep(m_parts.sessionStore->path(), language())
                                           : std::string(recordsWait.in(language())),
                                       language()));
        break;
    case Operation::insert:
        raise(recordNotSaved, m_parts.sessionStore->isSaved()
                                  ? description
                                  : sentences(description, recordIsKept.in(language()), language()));
        break;
    case Operation::delete_:
        raise(recordNotDeleted, description);
        break;
    case Operation::clear:
        raise(historyNotCleared, description);
        break;
    }
}

void AppModel::retryWrites(HistoryFile::Patience patience)
{
    m_parts.sessionStore->retry(patience);
    m_parts.activeTimerPersistence->retry();
    m_parts.preferencesStore->retry();
}

std::vector<std::string> AppModel::unsaved() const
{
    std::vector<std::string> result;
    const bool english = language() == AppLanguage::english;
    if (!m_parts.sessionStore->isSaved()) {
        const std::string count = std::to_string(m_parts.sessionStore->unsavedCount());
        result.push_back(english ? "history (records: " + count + ")" : "历史记录（" + count + " 条）");
    }
    if (!m_parts.activeTimerPersistence->isSaved()) {
        result.emplace_back(english ? "timer state" : "计时状态");
    }
    if (!m_parts.preferencesStore->isSaved()) {
        result.emplace_back(english ? "preferences" : "偏好设置");
    }
    return result;
}

void AppModel::raise(const BilingualText& messageTitle, const std::string& detail)
{
    const AppMessage message{Uuid::random(), std::string{messageTitle.in(language())}, detail};
    const bool waitsAlready = std::any_of(m_messages.begin(), m_messages.end(), [&](const AppMessage& other) {
        return other.title == message.title && other.detail == message.detail;
    });
    if (waitsAlready) {
        return;
    }
    m_messages.push_back(message);
    Q_EMIT appMessageChanged();
}

void AppModel::clearAppMessage()
{
    if (!m_messages.empty()) {
        m_messages.pop_front();
        Q_EMIT appMessageChanged();
    }
}

} // namespace brevlin
