#include "app/absence_questions.h"

#include <algorithm>
#include <utility>

namespace brevlin {

AbsenceQuestions::AbsenceQuestions(SessionDetailsStore& details, const Clock& clock, SessionSource session)
    : m_details(details), m_clock(clock), m_session(std::move(session))
{}

void AbsenceQuestions::setAsleep(bool asleep)
{
    const bool wasAway = isAway();
    m_isAsleep = asleep;
    awayMayHaveChanged(wasAway);
}

void AbsenceQuestions::setLocked(bool locked)
{
    const bool wasAway = isAway();
    m_isLocked = locked;
    awayMayHaveChanged(wasAway);
}

void AbsenceQuestions::awayMayHaveChanged(bool wasAway)
{
    if (isAway() == wasAway) {
        return;
    }
    if (isAway()) {
        begin(m_clock.now());
    } else {
        end(m_clock.now());
    }
}

void AbsenceQuestions::follow(const TimerSnapshot& snapshot)
{
    const bool runs = snapshot.phase == TimerPhase::focus && snapshot.runState == TimerRunState::running;
    const std::optional<Uuid> running = runs ? snapshot.sessionID : std::nullopt;
    if (std::exchange(m_running, running) != running && isAway() && snapshot.startedAt) {
        begin(m_clock.now());
    }
}

void AbsenceQuestions::begin(Instant start)
{
    if (!m_isReady || !m_running || !m_isEnabled || m_absent.contains(*m_running)) {
        return;
    }
    SessionDetails details = m_details.of(*m_running);
    Absence* last = details.absences.empty() ? nullptr : &details.absences.back();
    if (last != nullptr && last->end && last->decision == AbsenceDecision::undecided &&
        start - *last->end <= longestGap) {
        last->end.reset();
    } else {
        details.absences.push_back({start, std::nullopt, AbsenceDecision::undecided});
    }
    m_absent.insert(*m_running);
    m_details.set(*m_running, std::move(details));
    refresh();
}

void AbsenceQuestions::end(Instant now)
{
    for (const Uuid& id : std::exchange(m_absent, {})) {
        SessionDetails details = m_details.of(id);
        if (details.absences.empty() || details.absences.back().end) {
            continue;
        }
        Absence& absence = details.absences.back();
        absence.end = std::max(now, absence.start);
        const auto session = m_session(id);
        const bool isLong = session && countedLength(absence, *session, details.pauses) >= shortest;
        const Question question{id, details.absences.size() - 1, {absence.start, *absence.end}};
        if (!isLong) {
            details.absences.pop_back();
        }
        m_details.set(id, std::move(details));
        refresh();
        if (isLong) {
            Q_EMIT asked(question);
        }
    }
}

// An absence that still lasts when the details are read is one during which the process ended.
void AbsenceQuestions::refresh()
{
    if (!std::exchange(m_isReady, true) && isAway()) {
        begin(m_clock.now());
    }
    if (!isAway()) {
        std::set<Uuid> lasting;
        for (const auto& [id, details] : m_details.all()) {
            if (!details.absences.empty() && !details.absences.back().end) {
                lasting.insert(id);
            }
        }
        if (!lasting.empty()) {
            m_absent = std::move(lasting);
            end(m_clock.now());
            return;
        }
    }
    const auto current = oldestOpen();
    if (std::exchange(m_current, current) != current) {
        Q_EMIT currentChanged();
    }
}

void AbsenceQuestions::putAside()
{
    if (m_current) {
        m_putAside.insert({m_current->session, m_current->index});
        refresh();
    }
}

std::optional<AbsenceQuestions::Question> AbsenceQuestions::oldestOpen() const
{
    std::optional<Question> oldest;
    for (const auto& [id, details] : m_details.all()) {
        for (std::size_t index = 0; index < details.absences.size(); ++index) {
            const Absence& absence = details.absences[index];
            const bool isOpen = absence.end && absence.decision == AbsenceDecision::undecided &&
                                m_clock.now() - *absence.end < longestWait &&
                                !m_putAside.contains({id, index});
            if (isOpen && (!oldest || absence.start < oldest->away.start) && m_session(id)) {
                oldest = Question{id, index, {absence.start, *absence.end}};
            }
        }
    }
    return oldest;
}

} // namespace brevlin
