#include "app/app_model.h"
#include "app/storage_messages.h"
#include "core/absences.h"
#include "core/intention.h"

#include <algorithm>
#include <utility>

namespace brevlin {

void AppModel::connectHistory()
{
    m_parts.sessionStore->setObserver(
        {[this] {
             historyMayBeKnown();
             Q_EMIT sessionsChanged();
         },
         [this](const SessionStoreError& error) {
             raise(StorageMessages::history(error, *m_parts.sessionStore, language()));
         },
         [this](std::uint64_t number) { m_historyEditor.editTakenBack(number); },
         [this] {
             m_historyEditor.forget();
             m_parts.historyBackups->clear();
         },
         [this] {
             m_parts.historyBackups->recordWasWritten(m_calendar.localDay(now()));
         }});
    m_parts.historyBackups->setFailureHandler(
        [this](const DocumentError& error) { raise(StorageMessages::backups(error, language())); });
    m_parts.sessionDetailsStore->setObserver(
        {[this] { historyMayBeKnown(); },
         [this](const DocumentError& error) {
             raise(StorageMessages::details(error, m_parts.sessionDetailsStore->isRead(), language()));
         }});
    connect(&m_historyEditor, &HistoryEditor::changed, this, [this] {
        m_absences.refresh();
        Q_EMIT sessionsChanged();
    });
}

void AppModel::historyMayBeKnown()
{
    if (!m_engine || m_parts.sessionStore->isAwaited() || m_parts.sessionDetailsStore->isAwaited()) {
        return;
    }
    if (!std::exchange(m_isHistoryKnown, true)) {
        for (const auto& task : std::exchange(m_onceHistoryIsKnown, {})) {
            task();
        }
        carryOutDecisions();
    }
    m_historyEditor.settle();
    m_absences.refresh();
}

void AppModel::changeDetails(const Uuid& session, std::function<void(SessionDetails&)> change)
{
    const auto task = [this, session, change = std::move(change)] {
        SessionDetails details = m_parts.sessionDetailsStore->of(session);
        change(details);
        m_parts.sessionDetailsStore->set(session, std::move(details));
    };
    if (m_isHistoryKnown) {
        task();
    } else {
        m_onceHistoryIsKnown.push_back(task);
    }
}

// The record knows how long its pauses were, not when.
void AppModel::recordPause(const TimerTransition& transition, const TimerSnapshot& previous)
{
    const bool wasPaused =
        previous.runState == TimerRunState::paused && previous.sessionID && previous.pausedAt;
    const TimerSnapshot& next = transition.snapshot;
    const bool isOver = next.runState != TimerRunState::paused || next.sessionID != previous.sessionID;
    if (!wasPaused || !isOver) {
        return;
    }
    const Instant end = transition.finishedSession ? transition.finishedSession->endedAt : now();
    const DateInterval pause{*previous.pausedAt, std::max(end, *previous.pausedAt)};
    changeDetails(*previous.sessionID, [pause](SessionDetails& details) { details.pauses.push_back(pause); });
}

// What was decided of its absences while it ran is in its figures; from now on it is in the details too.
void AppModel::recordDecided(const FinishedSession& finished)
{
    if (!m_isHistoryKnown) {
        return; // settled once it is
    }
    const SessionDetails& known = m_parts.sessionDetailsStore->of(finished.id);
    const bool isDecided =
        std::any_of(known.absences.begin(), known.absences.end(),
                    [](const Absence& absence) { return absence.decision == AbsenceDecision::doNotCount; });
    if (isDecided && !known.beforeAbsences) {
        SessionDetails details = known;
        details.beforeAbsences = withoutAbsences(SessionRecord(finished), known);
        m_parts.sessionDetailsStore->set(finished.id, std::move(details));
    }
}

std::optional<SessionRecord> AppModel::sessionOf(const Uuid& id)
{
    if (m_snapshot.isActive() && m_snapshot.sessionID == id) {
        TimerEngine engine = *m_engine;
        const auto ended = engine.endEarly(now()).finishedSession;
        return ended ? std::optional{SessionRecord(*ended)} : std::nullopt;
    }
    const SessionRecord* record = m_historyEditor.find(id);
    return record != nullptr ? std::optional{*record} : std::nullopt;
}

void AppModel::setSessionLocked(bool locked)
{
    // A phase that is over by now ended before the user came back.
    reconcile(m_isAsleep);
    m_absences.setLocked(locked);
}

void AppModel::decideAbsence(const Uuid& session, std::size_t index, AbsenceDecision decision)
{
    reconcile(m_isAsleep);
    if (!m_snapshot.isActive() || m_snapshot.sessionID != session) {
        m_historyEditor.decide(session, index, decision);
        return;
    }
    SessionDetails details = m_parts.sessionDetailsStore->of(session);
    if (index >= details.absences.size() || !details.absences[index].end ||
        details.absences[index].decision != AbsenceDecision::undecided) {
        return;
    }
    if (decision == AbsenceDecision::endAtStart) {
        endAtAbsence(session, index);
        return;
    }
    const auto phase = sessionOf(session);
    const Seconds length = phase ? countedLength(details.absences[index], *phase, details.pauses) : Seconds{};
    details.absences[index].decision = decision;
    m_parts.sessionDetailsStore->set(session, std::move(details));
    if (decision == AbsenceDecision::doNotCount) {
        run([length](TimerEngine& engine, Instant at) { return engine.countAsPause(length, at); });
    }
    m_absences.refresh();
}

// The phase ends now for the timer, and when the absence began for the history.
void AppModel::endAtAbsence(const Uuid& session, std::size_t index)
{
    const TimerSnapshot previous = m_snapshot;
    SessionDetails details = m_parts.sessionDetailsStore->of(session);
    details.absences[index].decision = AbsenceDecision::endAtStart;
    if (const auto phase = sessionOf(session)) {
        details.beforeAbsences = withoutAbsences(*phase, details);
    }
    const SessionDetails known = details;
    m_parts.sessionDetailsStore->set(session, std::move(details));
    run([&known](TimerEngine& engine, Instant at) {
        TimerTransition transition = engine.endEarly(at);
        if (transition.finishedSession && known.beforeAbsences) {
            const SessionRecord record = withAbsences(*known.beforeAbsences, known);
            transition.finishedSession->endedAt = record.endedAt;
            transition.finishedSession->effectiveDuration = record.effectiveDuration;
            transition.finishedSession->pauseDuration = record.pauseDuration;
            transition.finishedSession->interruptionCount = record.interruptionCount;
        }
        return transition;
    });
    m_absences.refresh();
    offerToGoOn(UndoOffer::Kind::endingEarly, previous);
}

// A crash may have come between an answer and the timer that follows it.
void AppModel::carryOutDecisions()
{
    if (!m_snapshot.isActive() || !m_snapshot.sessionID) {
        return;
    }
    const SessionDetails details = m_parts.sessionDetailsStore->of(*m_snapshot.sessionID);
    const auto phase = sessionOf(*m_snapshot.sessionID);
    if (!phase) {
        return;
    }
    Seconds missing = -m_snapshot.accumulatedPauseSeconds;
    for (const DateInterval& pause : details.pauses) {
        missing += pause.end - pause.start;
    }
    for (std::size_t index = 0; index < details.absences.size(); ++index) {
        const Absence& absence = details.absences[index];
        if (absence.decision == AbsenceDecision::endAtStart) {
            endAtAbsence(*m_snapshot.sessionID, index);
            return;
        }
        if (absence.decision == AbsenceDecision::doNotCount) {
            missing += countedLength(absence, *phase, details.pauses);
        }
    }
    constexpr Seconds rounding{1.0};
    if (missing > rounding) {
        run([missing](TimerEngine& engine, Instant at) { return engine.countAsPause(missing, at); });
    }
}

void AppModel::offerToGoOn(UndoOffer::Kind kind, const TimerSnapshot& previous)
{
    const bool isOver = previous.isActive() && m_snapshot.sessionID != previous.sessionID;
    const bool isSkipped = previous.runState == TimerRunState::ringing && m_snapshot.phase != previous.phase;
    // What was due by then has ended by itself.
    const bool hasEnded = previous.isDue(now());
    if ((isOver && !hasEnded) || isSkipped) {
        m_undoOffer.make({kind, 1, [this, previous] {
                              goOn(previous);
                          }});
    }
}

// As if nothing had happened: the phase's record goes, and so does the phase that was begun after it.
void AppModel::goOn(const TimerSnapshot& previous)
{
    Q_EMIT commandReceived(TimerCommand::undo);
    m_parts.soundService->stop();
    if (previous.sessionID) {
        if (const SessionRecord* record = m_historyEditor.find(*previous.sessionID)) {
            m_parts.sessionStore->remove(SessionRecord(*record));
        }
        changeDetails(*previous.sessionID, [&previous](SessionDetails& details) {
            std::erase_if(details.pauses, [&previous](const DateInterval& pause) {
                return previous.pausedAt && pause.start == *previous.pausedAt;
            });
            for (Absence& absence : details.absences) {
                if (absence.decision == AbsenceDecision::endAtStart) {
                    absence.decision = AbsenceDecision::undecided;
                }
            }
            details.beforeAbsences.reset();
        });
    }
    run([this, &previous](TimerEngine& engine, Instant) {
        engine = TimerEngine(m_preferences.timerSettings, previous,
                             [this] { return m_parts.clock.timeZone()->identifier(); });
        return TimerTransition{engine.snapshot(), std::nullopt};
    });
    m_absences.refresh();
    Q_EMIT sessionsChanged();
    reconcile(m_isAsleep);
    Q_EMIT commandCarriedOut(TimerCommand::undo);
}

bool AppModel::isFocusUnderWay() const
{
    return m_snapshot.isActive() && m_snapshot.phase == TimerPhase::focus;
}

std::string AppModel::intention() const
{
    return isFocusUnderWay() ? m_snapshot.intention.value_or(std::string{}) : m_preparedIntention;
}

void AppModel::setIntention(const std::string& intention)
{
    const std::string text = typedIntention(intention, longestIntention);
    if (text == this->intention()) {
        return;
    }
    if (isFocusUnderWay()) {
        run([&text](TimerEngine& engine, Instant) { return engine.setIntention(text); });
    } else {
        m_preparedIntention = text;
        Q_EMIT preparedIntentionChanged();
    }
}

void AppModel::setAsksAboutAbsences(bool asks)
{
    changeAddedPreferences([asks](AddedPreferences& preferences) { preferences.asksAboutAbsences = asks; });
}

void AppModel::setSilencesNotifications(bool silences)
{
    changeAddedPreferences(
        [silences](AddedPreferences& preferences) { preferences.silencesNotifications = silences; });
}

void AppModel::setShortcut(ShortcutAction action, const std::optional<KeyCombination>& key)
{
    changeAddedPreferences([&](AddedPreferences& preferences) { preferences.shortcutKeys[action] = key; });
}

void AppModel::changeAddedPreferences(const std::function<void(AddedPreferences&)>& change)
{
    AddedPreferences preferences = m_addedPreferences;
    change(preferences);
    if (preferences != m_addedPreferences) {
        // What cannot be expressed holds for this run.
        [[maybe_unused]] const auto saved = m_parts.addedPreferencesStore->save(preferences);
        adoptAdded(preferences);
    }
}

void AppModel::adoptAdded(const AddedPreferences& preferences)
{
    if (std::exchange(m_addedPreferences, preferences) != preferences) {
        followAdded();
        Q_EMIT preferencesChanged();
    }
}

void AppModel::followAdded()
{
    m_absences.setEnabled(m_addedPreferences.asksAboutAbsences);
    m_focusQuiet.setEnabled(m_addedPreferences.silencesNotifications);
    m_shortcuts.follow(m_addedPreferences, language());
}

void AppModel::undo()
{
    if (m_undoOffer.current()) {
        m_undoOffer.accept();
    } else {
        m_historyEditor.undo();
    }
}

void AppModel::deleteSession(const SessionRecord& record)
{
    m_historyEditor.remove({record.id});
}

void AppModel::clearHistory()
{
    m_historyEditor.clear();
}

} // namespace brevlin
