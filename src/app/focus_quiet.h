#pragma once

#include "core/timer_snapshot.h"
#include "platform/notification_silencer.h"
#include "platform/task_scheduler.h"
#include "storage/silence_note.h"

#include <QObject>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brevlin {

/// What focus needs to silence a desktop; without them nothing is ever silenced.
struct QuietParts
{
    NotificationSilencer* silencer = nullptr; ///< outlives the model
    std::unique_ptr<SilenceNoteStore> note;
};

/// Silences the desktop's notifications while a focus phase runs, where the user wishes it, and gives back
/// what was before. A switch that was silent already is left alone, and so is one that the user turns
/// meanwhile, until the next focus phase. A note on the disk stands before the switch is turned, so that the
/// next start gives back what a killed program could not. One thing is done at a time; what has changed
/// meanwhile is looked at after it.
class FocusQuiet final : public QObject
{
    Q_OBJECT

public:
    /// How long an announcement waits for a desktop that does not say that it has given back.
    static constexpr Seconds announcementPatience{0.5};
    /// How long an announcement is to be seen before the next silence.
    static constexpr Seconds announcementMoment{10.0};
    /// How long the end of the program waits for the desktop.
    static constexpr Seconds endPatience{2.0};

    FocusQuiet(QuietParts parts, TaskScheduler& scheduler);
    ~FocusQuiet() override;

    /// Reads what an earlier run has left, and gives it back.
    void start();
    void setEnabled(bool isEnabled);
    /// The timer is now this.
    void follow(const TimerSnapshot& snapshot);
    /// Shows an announcement of the program's own where it is seen: at once, or after giving back.
    void announce(std::function<void()> show);
    /// The user has seen what was announced.
    void announcementIsGone() { m_moment.reset(); }

    /// The program is about to end: gives back, and silences no more.
    void end();
    /// Whether the end has nothing to wait for.
    bool isAtRest() const { return !m_silenced || m_hasWaitedEnough; }
    /// For an end that allows no later step: waits here, for a moment at most. Should the program go on all
    /// the same, the next focus phase is silenced again.
    void giveBackNow();

    NotificationSilencer::Support support() const;
    /// Finds out about the desktop's switch, if nobody has yet.
    void look();

Q_SIGNALS:
    void supportChanged();
    /// Whether what silences the desktop is the program's doing.
    void ownSilenceChanged(bool isKept);

private:
    using Lasts = NotificationSilencer::Lasts;
    using State = NotificationSilencer::State;
    using Switch = NotificationSilencer::Switch;

    bool isWanted() const;
    bool isToBeGivenBack() const;
    void noteWasRead(const std::optional<SilenceNote>& note);
    void noteIsSaved();
    void switchChanged();
    void wasTurned();
    void settle();
    void beginSilence();
    void noteThenTurn(const Switch& found);
    void turn();
    void verify();
    void giveBack();
    void turnBack();
    void forget();
    void leaveToUser();
    void putDown();
    void showAnnouncements();
    /// As long as nothing else has come between.
    template <typename Function>
    auto whileBusy(Function function);

    QuietParts m_parts;
    TaskScheduler& m_scheduler;
    bool m_isEnabled = false;
    bool m_isFocusRunning = false;
    std::optional<Uuid> m_session;
    bool m_isEnding = false;
    bool m_hasWaitedEnough = false;
    bool m_isLeftToUser = false; // until the next focus phase

    bool m_isNoteKnown = false;       // what an earlier run has left
    std::optional<Switch> m_silenced; // by us, or about to be
    bool m_isVerified = false;        // by a look at the present server's switch
    bool m_isNoteAwaited = false;     // on the disk; the switch is not turned yet
    bool m_isBusy = false;
    std::uint64_t m_step = 0;

    std::vector<std::function<void()>> m_waiting; // announcements
    TaskHandle m_patience;
    TaskHandle m_moment; // in which an announcement is to be seen
    TaskHandle m_endPatience;
};

} // namespace brevlin
