#pragma once

#include "app/absence_questions.h"
#include "app/app_messages.h"
#include "app/focus_quiet.h"
#include "app/history_editor.h"
#include "app/history_transfer.h"
#include "app/hook_caller.h"
#include "app/launch_at_login.h"
#include "app/phase_announcer.h"
#include "app/shortcuts.h"
#include "app/undo_offer.h"
#include "core/calendar.h"
#include "core/session_record.h"
#include "core/statistics_calculator.h"
#include "core/timer_engine.h"
#include "platform/clock.h"
#include "platform/system_events.h"
#include "platform/task_scheduler.h"
#include "services/alert_sound_service.h"
#include "storage/active_timer_persistence.h"
#include "storage/added_preferences.h"
#include "storage/history_backups.h"
#include "storage/preferences_store.h"
#include "storage/session_details_store.h"
#include "storage/session_store.h"

#include <QObject>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brevlin {

struct StorageMessage;
class CapsuleMover;

/// Of an intention, in characters.
inline constexpr std::size_t longestIntention = 200;

/// Everything that the model works with. What it borrows outlives it; the rest is its own.
struct AppModelParts
{
    Clock& clock;
    TaskScheduler& scheduler;
    SystemEvents& systemEvents;
    std::unique_ptr<PreferencesStore> preferencesStore;
    std::unique_ptr<ActiveTimerPersistence> activeTimerPersistence;
    std::unique_ptr<AddedPreferencesStore> addedPreferencesStore;
    std::unique_ptr<SessionStore> sessionStore;
    std::unique_ptr<SessionDetailsStore> sessionDetailsStore;
    std::unique_ptr<HistoryBackups> historyBackups;
    std::unique_ptr<NotificationService> notificationService;
    std::unique_ptr<AlertSoundService> soundService;
    std::unique_ptr<LaunchAtLoginService> launchAtLoginService;
    TransferParts transferParts;
    HookParts hookParts;
    std::string userLocale;               ///< of the desktop, for the time of day; an ICU locale identifier
    CapsuleMover* capsuleMover = nullptr; ///< none where no capsule can be placed
    GlobalShortcuts* globalShortcuts = nullptr; ///< none where no key can be heard
    QuietParts quietParts = {};                 ///< none where no desktop can be silenced
};

/// What the user does to the timer.
enum class TimerCommand {
    start,
    pause,
    resume,
    addTime,
    endCurrentPhase,
    switchToNextPhase,
    advance,
    skipPendingPhase,
    dismissCompletion,
    undo, ///< of the latest of these, which ended a phase
};

/// The one observable object of the program: it owns the timer, the stores and the services, publishes what
/// the views draw and runs the user's commands. Every change of the timer goes through apply(). Signals are
/// emitted only when a value really changed.
class AppModel final : public QObject
{
    Q_OBJECT

public:
    /// Restores what was stored; a phase that ended meanwhile is completed from the next turn of the event
    /// loop.
    explicit AppModel(AppModelParts parts, QObject* parent = nullptr);
    ~AppModel() override;

    // Published state
    const TimerSnapshot& snapshot() const { return m_snapshot; }
    Seconds remainingSeconds() const { return m_remainingSeconds; }
    /// Latest end first.
    const std::vector<SessionRecord>& sessions() const { return m_parts.sessionStore->sessions(); }
    StatisticsSummary statistics() const;
    /// Whether the history is still being read for the first time: then no figure of it is known.
    bool isHistoryAwaited() const { return m_parts.sessionStore->isAwaited(); }
    const AppPreferences& preferences() const { return m_preferences; }
    AppLanguage language() const { return m_preferences.appLanguage; }
    const AddedPreferences& addedPreferences() const { return m_addedPreferences; }
    bool isAlertSoundPlaying() const { return m_isAlertSoundPlaying; }
    /// What the focus phase under way is for, else what the next one will be for; empty for nothing.
    std::string intention() const;

    // What stands beside the timer
    AppMessages& messages() { return m_messages; }
    LaunchAtLogin& launchAtLogin() { return m_launchAtLogin; }
    PhaseAnnouncer& announcer() { return m_announcer; }
    HistoryEditor& historyEditor() { return m_historyEditor; }
    HistoryBackups& historyBackups() { return *m_parts.historyBackups; }
    HistoryTransfer& historyTransfer() { return m_historyTransfer; }
    UndoOffer& undoOffer() { return m_undoOffer; }
    AbsenceQuestions& absences() { return m_absences; }
    FocusQuiet& focusQuiet() { return m_focusQuiet; }
    Shortcuts& shortcuts() { return m_shortcuts; }
    HookCaller& hooks() { return *m_hooks; }
    CapsuleMover* capsuleMover() const { return m_parts.capsuleMover; }

    // Display values, from the published state
    double progress() const;
    /// Empty while idle.
    std::string menuBarTitle() const;
    /// Whether the end of the phase that runs, or has just ended, waits for the user, so that an island
    /// stands.
    bool isEndPresented() const;
    /// 1 to N.
    std::int64_t cyclePosition() const;
    std::string endTimeText() const;
    std::int64_t currentCycleFocusMinutes() const;
    std::string cycleSummaryText() const;
    /// The user's current calendar: the desktop's locale and the system's time zone.
    const Calendar& calendar() const { return m_calendar; }
    Instant now() const { return m_parts.clock.now(); }

    // Timer commands
    void start();
    void pause();
    void resume();
    void addFiveMinutes();
    void endCurrentPhase();
    void switchToNextPhase();
    void advance();
    void skipPendingPhase();
    void dismissCompletion();
    void performPrimaryAction();
    void stopAlertSound();
    /// Says what the focus phase under way is for, or the next one where there is none. White space at both
    /// ends goes, a line break becomes a space, and no more than longestIntention characters stay. Lasts for
    /// one phase.
    void setIntention(const std::string& intention);

    // Settings commands
    /// Takes over what `change` makes of the preferences, keeps it and lets follow what follows from it. The
    /// commands below are this one under the names of what they change.
    void changePreferences(const std::function<void(AppPreferences&)>& change);
    /// The minutes are kept within 1 to 180.
    void setDuration(std::int64_t minutes, TimerPhase phase);
    void commitTimerSettings(const TimerSettings& settings);
    void setShowTopCapsuleWhileRunning(bool show);
    void setPlayCompletionSound(bool play);
    void setAppLanguage(AppLanguage language);
    void setTopTimerAppearance(TopTimerAppearance appearance);
    void setAsksAboutAbsences(bool asks);
    void setSilencesNotifications(bool silences);
    /// Nothing takes the action's key away.
    void setShortcut(ShortcutAction action, const std::optional<KeyCombination>& key);
    void restoreDefaultPreferences();

    // History commands; the editor has the others
    void deleteSession(const SessionRecord& record);
    void clearHistory();
    /// Answers what is asked of an absence, or changes the answer, also while the phase runs.
    void decideAbsence(const Uuid& session, std::size_t index, AbsenceDecision decision);

    /// Takes back what is offered to be taken back, else the latest step of the history.
    void undo();

    /// The token is what the desktop gave to the user's action; empty where there is none.
    void activateMainWindow(const std::string& token = {});
    /// What the user wants who presses the action's key, wherever he is.
    void perform(ShortcutAction action, const std::string& token = {});
    /// Nobody sees the windows while the session is locked.
    void setSessionLocked(bool locked);

    // What is to be on the disk
    /// Tries now to write what the disk has not taken yet. At the end there is nothing left to wait for.
    void retryWrites(HistoryFile::Patience patience = HistoryFile::Patience::waits);
    /// What is in memory alone, in the user's language; empty when everything is on the disk.
    std::vector<std::string> unsaved() const;

Q_SIGNALS:
    /// The user has acted, and the timer is still what it was.
    void commandReceived(TimerCommand command);
    /// Everything that follows from the command is done; there may have been nothing to do.
    void commandCarriedOut(TimerCommand command);
    /// A phase has ended and is recorded. The timer is published, and nothing sounds yet.
    void phaseEnded(const FinishedSession& finished);
    /// Instead of this phase another one waits now.
    void pendingPhaseSkipped(TimerPhase skipped);
    /// All of a transition of the timer has taken effect, whether it has changed anything or not.
    void transitionApplied();
    void snapshotChanged();
    void remainingSecondsChanged();
    void sessionsChanged();
    void preferencesChanged();
    /// What the next focus phase will be for is another text.
    void preparedIntentionChanged();
    /// Beside the changes that this made.
    void defaultPreferencesRestored();
    void alertSoundPlayingChanged();
    /// A second has passed, or the clock was set.
    void ticked();
    void mainWindowActivationRequested(const std::string& token);

private:
    using AskForPermission = PhaseAnnouncer::AskForPermission;
    using TimerOperation = std::function<TimerTransition(TimerEngine&, Instant)>;

    void restore();
    std::optional<TimerSnapshot> restoreTimer();
    void connectStores();
    void takePreferences(const AppPreferences& stored);
    void takeTimer(const ActiveTimerPersistence::Loaded& stored);
    void recordSuperseded(const TimerSnapshot& stored);
    void connectParts();
    void observeSystemEvents();
    Seconds tickInterval() const;
    Seconds untilNextTick() const;
    void startTicker();
    void alignTicker();
    void tick();
    void refreshSystemStateAndReconcile(bool completedWhileAway);
    void reconcile(bool completedWhileAway);
    void apply(const TimerTransition& transition, const TimerSnapshot& previous, AskForPermission permission);
    void save(const TimerSnapshot& snapshot);
    void recordFinishedSession(const FinishedSession& finished);
    void handleNotificationAction(const TimerNotificationAction& action,
                                  const std::optional<Uuid>& sessionID);
    void publish(const TimerSnapshot& snapshot);
    void publishRemainingSeconds();
    void adopt(const AppPreferences& preferences);
    void changeAddedPreferences(const std::function<void(AddedPreferences&)>& change);
    void adoptAdded(const AddedPreferences& preferences);
    void followAdded();
    void connectHistory();
    void historyMayBeKnown();
    /// Once the details have been read: those of a phase are changed, not replaced.
    void changeDetails(const Uuid& session, std::function<void(SessionDetails&)> change);
    void recordPause(const TimerTransition& transition, const TimerSnapshot& previous);
    void recordDecided(const FinishedSession& finished);
    bool isFocusUnderWay() const;
    std::optional<SessionRecord> sessionOf(const Uuid& id);
    void carryOutDecisions();
    void endAtAbsence(const Uuid& session, std::size_t index);
    void offerToGoOn(UndoOffer::Kind kind, const TimerSnapshot& previous);
    void goOn(const TimerSnapshot& previous);
    void raise(const StorageMessage& message);
    void refreshCalendar();
    /// One operation of the engine at this instant, whose transition takes effect.
    void run(const TimerOperation& operation, AskForPermission permission = AskForPermission::no);
    /// The shape of every timer command of the user, who has heard the alert.
    void command(TimerCommand command, const TimerOperation& operation,
                 AskForPermission permission = AskForPermission::no);

    AppModelParts m_parts;
    AppMessages m_messages;
    LaunchAtLogin m_launchAtLogin;
    PhaseAnnouncer m_announcer;
    Shortcuts m_shortcuts;
    UndoOffer m_undoOffer;
    HistoryEditor m_historyEditor;
    HistoryTransfer m_historyTransfer;
    AbsenceQuestions m_absences;
    FocusQuiet m_focusQuiet;
    std::unique_ptr<HookCaller> m_hooks; // made once the timer is restored, then never absent
    AppPreferences m_preferences;
    AddedPreferences m_addedPreferences;
    std::string m_preparedIntention;
    bool m_isHistoryKnown = false; // records and details have been read, or could not be
    std::vector<std::function<void()>> m_onceHistoryIsKnown;
    std::optional<TimerEngine> m_engine; // made once the stored state is known, then never absent
    TimerSnapshot m_snapshot;
    std::optional<TimerSnapshot> m_savedSnapshot; // what the disk has or will get
    Seconds m_remainingSeconds{0.0};
    bool m_isAlertSoundPlaying = false;
    bool m_isAsleep = false; // from the announcement of sleep to the waking
    Calendar m_calendar;
    TaskHandle m_ticker;
    TaskHandle m_startUpTask;
};

} // namespace brevlin
