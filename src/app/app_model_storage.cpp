#include "app/app_model.h"
#include "app/storage_messages.h"

#include <utility>

namespace brevlin {

void AppModel::restore()
{
    m_preferences = m_parts.preferencesStore->load();
    if (const auto& error = m_parts.preferencesStore->readError()) {
        raise(StorageMessages::preferencesUnread(*error));
    }
    m_addedPreferences = m_parts.addedPreferencesStore->load();
    followAdded();
    m_messages.setLanguage(language());
    std::optional<TimerSnapshot> restored = restoreTimer();
    connectStores();
    m_announcer.setLanguage(language());

    const bool wasRunning = restored && restored->runState == TimerRunState::running;
    m_engine.emplace(m_preferences.timerSettings, std::move(restored),
                     [this] { return m_parts.clock.timeZone()->identifier(); });
    m_snapshot = m_engine->snapshot();
    m_remainingSeconds = m_snapshot.remainingSeconds(now());
    m_announcer.follow(m_snapshot, m_preferences.timerSettings.alertIntensity);
    m_absences.follow(m_snapshot);
    m_focusQuiet.follow(m_snapshot);
    historyMayBeKnown();
    m_startUpTask = m_parts.scheduler.after(Seconds::zero(), [this, wasRunning] {
        refreshSystemStateAndReconcile(wasRunning);
        m_focusQuiet.start(); // what has ended by now is not silenced for a moment
    });
}

std::optional<TimerSnapshot> AppModel::restoreTimer()
{
    const auto stored = m_parts.activeTimerPersistence->load();
    if (stored) {
        m_savedSnapshot = *stored; // a start that changes nothing writes nothing
        return *stored;
    }
    if (stored.error().isAboutContent) {
        // Keeps what could not be read under another name; should that fail, the next save tries again.
        m_parts.activeTimerPersistence->clear();
        raise(StorageMessages::timerReset(language()));
    } else {
        raise(StorageMessages::timerUnread(stored.error(), language()));
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
             raise(StorageMessages::timerNotSaved(error, true, language()));
         }});
    m_parts.addedPreferencesStore->setWasReadObserver(
        [this](const AddedPreferences& stored) { adoptAdded(stored); });
    connectHistory();
}

// The preferences could not be read at the start, which gave the defaults, and can be now.
void AppModel::takePreferences(const AppPreferences& stored)
{
    const AppPreferences all = joined(stored, {}, m_preferences);
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
        raise(StorageMessages::timerReset(language()));
    } else if (*stored && m_snapshot == freshSnapshot(m_preferences.timerSettings)) {
        m_engine.emplace(m_preferences.timerSettings, **stored,
                         [this] { return m_parts.clock.timeZone()->identifier(); });
        apply({m_engine->snapshot(), std::nullopt}, TimerSnapshot(m_snapshot),
              PhaseAnnouncer::AskForPermission::no);
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
        raise(StorageMessages::timerNotSaved(saved.error(), false, language()));
    }
    retryWrites(); // where there is room for this there may be room for more
}

void AppModel::recordFinishedSession(const FinishedSession& finished)
{
    m_parts.sessionStore->insert(finished);
    Q_EMIT sessionsChanged();
}

void AppModel::retryWrites(HistoryFile::Patience patience)
{
    m_parts.sessionStore->retry(patience);
    m_parts.sessionDetailsStore->retry();
    m_parts.historyBackups->retry();
    m_parts.addedPreferencesStore->retry();
    m_parts.activeTimerPersistence->retry();
    m_parts.preferencesStore->retry();
}

std::vector<std::string> AppModel::unsaved() const
{
    std::vector<std::string> result;
    const bool english = language() == AppLanguage::english;
    if (!m_parts.sessionDetailsStore->isSaved()) {
        result.emplace_back(english ? "pauses and absences" : "暂停与离开记录");
    }
    if (!m_parts.sessionStore->isSaved()) {
        const std::string count = std::to_string(m_parts.sessionStore->unsavedCount());
        result.push_back(english ? "history (records: " + count + ")" : "历史记录（" + count + " 条）");
    }
    if (!m_parts.activeTimerPersistence->isSaved()) {
        result.emplace_back(english ? "timer state" : "计时状态");
    }
    if (!m_parts.preferencesStore->isSaved() || !m_parts.addedPreferencesStore->isSaved()) {
        result.emplace_back(english ? "preferences" : "偏好设置");
    }
    return result;
}

void AppModel::raise(const StorageMessage& message)
{
    m_messages.raise(message.title, message.detail);
}

} // namespace brevlin
