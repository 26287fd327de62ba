#pragma once

#include "core/absences.h"
#include "core/session_details.h"
#include "core/timer_snapshot.h"
#include "platform/clock.h"
#include "storage/session_details_store.h"

#include <QObject>

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <utility>

namespace brevlin {

/// Notices that nobody was there while a focus phase ran, because the computer slept or was locked, and asks
/// once on the return what that time was. What it knows stands in the details of the phase from the first
/// moment on, so that the end of the process changes nothing.
class AbsenceQuestions final : public QObject
{
    Q_OBJECT

public:
    /// One absence of one phase.
    struct Question
    {
        Uuid session;
        std::size_t index = 0; ///< of the absence in the phase's details
        DateInterval away;

        bool operator==(const Question&) const = default;
    };

    /// The phase as a record, also while it runs; nothing where it is not known.
    using SessionSource = std::function<std::optional<SessionRecord>(const Uuid&)>;

    static constexpr Seconds shortest{180.0}; ///< of what is asked about, pauses left out
    /// A session that is locked so soon after the computer woke was never unlocked.
    static constexpr Seconds longestGap{10.0};
    /// What was not answered by then is asked no more by itself.
    static constexpr Seconds longestWait{12.0 * 3600};

    AbsenceQuestions(SessionDetailsStore& details, const Clock& clock, SessionSource session);

    /// Forgets nothing that was asked already.
    void setEnabled(bool enabled) { m_isEnabled = enabled; }
    void setAsleep(bool asleep);
    void setLocked(bool locked);
    /// The timer is now this.
    void follow(const TimerSnapshot& snapshot);
    /// Records or details are other ones. The first call tells that both have been read: before it nothing
    /// is asked or kept.
    void refresh();

    /// What is to be asked now; more may wait behind it.
    const std::optional<Question>& current() const { return m_current; }
    /// Not now: it stays unanswered in the history.
    void putAside();

Q_SIGNALS:
    void currentChanged();
    /// The user is back, and this has never been asked before.
    void asked(const AbsenceQuestions::Question& question);

private:
    bool isAway() const { return m_isAsleep || m_isLocked; }
    void awayMayHaveChanged(bool wasAway);
    void begin(Instant start);
    void end(Instant now);
    std::optional<Question> oldestOpen() const;

    SessionDetailsStore& m_details;
    const Clock& m_clock;
    SessionSource m_session;
    bool m_isReady = false;
    bool m_isEnabled = true;
    bool m_isAsleep = false;
    bool m_isLocked = false;
    std::optional<Uuid> m_running; // the focus phase that runs now
    std::set<Uuid> m_absent;       // phases with an absence that lasts
    std::set<std::pair<Uuid, std::size_t>> m_putAside;
    std::optional<Question> m_current;
};

} // namespace brevlin
