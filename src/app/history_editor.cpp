#include "app/history_editor.h"

#include "core/absences.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>
#include <utility>

namespace brevlin {

namespace {

bool hasSameTimes(const SessionRecord& one, const SessionRecord& other)
{
    return one.actualStartAt == other.actualStartAt && one.endedAt == other.endedAt &&
           one.effectiveDuration == other.effectiveDuration && one.outcomeRawValue == other.outcomeRawValue;
}

bool isOf(const SessionDetails& details, AbsenceDecision decision)
{
    return std::any_of(details.absences.begin(), details.absences.end(),
                       [decision](const Absence& absence) { return absence.decision == decision; });
}

// What is known of a phase whose record was corrected by hand. Where it ends is now what the user said.
SessionDetails correctedDetails(SessionDetails details, const SessionRecord& before,
                                const SessionRecord& corrected)
{
    if (!details.asRecorded &&
        (!hasSameTimes(before, corrected) || !(before.phaseRawValue == corrected.phaseRawValue))) {
        details.asRecorded = before;
    }
    if (hasSameTimes(before, corrected)) {
        if (details.beforeAbsences) {
            details.beforeAbsences->phaseRawValue = corrected.phaseRawValue;
            details.beforeAbsences->intention = corrected.intention;
        }
        return details;
    }
    for (Absence& absence : details.absences) {
        if (absence.decision == AbsenceDecision::endAtStart) {
            absence.decision = AbsenceDecision::keep;
        }
    }
    details.beforeAbsences.reset();
    if (isOf(details, AbsenceDecision::doNotCount)) {
        details.beforeAbsences = withoutAbsences(corrected, details);
    }
    return details;
}

void sortLatestFirst(std::vector<KeptSession>& sessions)
{
    std::stable_sort(sessions.begin(), sessions.end(), [](const KeptSession& left, const KeptSession& right) {
        return endedLater(left.record, right.record);
    });
}

} // namespace

HistoryEditor::HistoryEditor(SessionStore& records, SessionDetailsStore& details, UndoOffer& offer)
    : m_records(records), m_details(details), m_offer(offer)
{}

const SessionRecord* HistoryEditor::find(const Uuid& id) const
{
    const auto& records = m_records.sessions();
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&id](const SessionRecord& record) { return record.id == id; });
    return found == records.end() ? nullptr : &*found;
}

std::vector<KeptSession> HistoryEditor::keptOf(std::vector<Uuid> ids) const
{
    std::sort(ids.begin(), ids.end());
    std::vector<KeptSession> result;
    for (const SessionRecord& record : m_records.sessions()) {
        if (std::binary_search(ids.begin(), ids.end(), record.id)) {
            result.push_back(kept(record));
        }
    }
    return result;
}

void HistoryEditor::add(const SessionRecord& record)
{
    carryOut(StepKind::addition, {}, {{record, {}}});
}

void HistoryEditor::change(const SessionRecord& corrected)
{
    const SessionRecord* before = find(corrected.id);
    if (before == nullptr || *before == corrected) {
        return;
    }
    const KeptSession old = kept(*before);
    carryOut(StepKind::change, {old}, {{corrected, correctedDetails(old.details, old.record, corrected)}});
}

void HistoryEditor::remove(const std::vector<Uuid>& ids)
{
    std::vector<KeptSession> before = keptOf(ids);
    const std::size_t count = before.size();
    if (count > 0) {
        if (carryOut(StepKind::removal, std::move(before), {})) {
            offer(UndoOffer::Kind::removal, count);
        }
    }
}

void HistoryEditor::renameIntention(const std::string& from, const std::string& to)
{
    std::vector<KeptSession> before;
    std::vector<KeptSession> after;
    for (const SessionRecord& record : m_records.sessions()) {
        if (record.intention.view() == from) {
            const KeptSession old = kept(record);
            KeptSession renamed = old;
            renamed.record.intention = SharedText(to);
            renamed.details = correctedDetails(old.details, old.record, renamed.record);
            before.push_back(old);
            after.push_back(std::move(renamed));
        }
    }
    const std::size_t count = before.size();
    if (count > 0 && from != to) {
        if (carryOut(StepKind::renaming, std::move(before), std::move(after))) {
            offer(UndoOffer::Kind::renaming, count);
        }
    }
}

void HistoryEditor::decide(const Uuid& id, std::size_t index, AbsenceDecision decision)
{
    const SessionRecord* record = find(id);
    const SessionDetails& known = detailsOf(id);
    if (record == nullptr || index >= known.absences.size() || !known.absences[index].end ||
        known.absences[index].decision == decision) {
        return;
    }
    const KeptSession before{*record, known};
    KeptSession after = before;
    SessionDetails& details = after.details;
    if (!details.beforeAbsences) {
        details.beforeAbsences = withoutAbsences(*record, details);
    }
    if (decision == AbsenceDecision::endAtStart) {
        // A phase ends once.
        for (Absence& absence : details.absences) {
            if (absence.decision == AbsenceDecision::endAtStart) {
                absence.decision = AbsenceDecision::keep;
            }
        }
    }
    details.absences[index].decision = decision;
    after.record = withAbsences(*details.beforeAbsences, details);
    carryOut(StepKind::decision, {before}, {std::move(after)});
}

void HistoryEditor::import(std::vector<SessionRecord> records, SessionDetailsById details)
{
    std::vector<KeptSession> after;
    after.reserve(records.size());
    for (SessionRecord& record : records) {
        const auto known = details.find(record.id);
        after.push_back({std::move(record), known == details.end() ? SessionDetails{} : known->second});
    }
    const std::size_t count = after.size();
    if (count > 0) {
        if (carryOut(StepKind::import, {}, std::move(after))) {
            offer(UndoOffer::Kind::import, count);
        }
    }
}

void HistoryEditor::restore(std::vector<SessionRecord> records, SessionDetailsById details)
{
    std::vector<KeptSession> before;
    for (const SessionRecord& record : m_records.sessions()) {
        before.push_back(kept(record));
    }
    std::vector<KeptSession> after;
    for (SessionRecord& record : records) {
        const auto known = details.find(record.id);
        after.push_back({std::move(record), known == details.end() ? SessionDetails{} : known->second});
    }
    sortLatestFirst(after);
    if (before != after) {
        const std::size_t count = after.size();
        if (carryOut(StepKind::restoration, std::move(before), std::move(after))) {
            offer(UndoOffer::Kind::restoration, count);
        }
    }
}

void HistoryEditor::clear()
{
    m_records.clear();
    Q_EMIT changed();
}

void HistoryEditor::forget()
{
    m_offer.withdraw();
    m_steps.clear();
    m_doneCount = 0;
    m_details.clear();
    Q_EMIT changed();
    Q_EMIT stepsChanged();
}

std::optional<HistoryEditor::StepKind> HistoryEditor::undoable() const
{
    return m_doneCount > 0 ? std::optional{m_steps[m_doneCount - 1].kind} : std::nullopt;
}

std::optional<HistoryEditor::StepKind> HistoryEditor::redoable() const
{
    return m_doneCount < m_steps.size() ? std::optional{m_steps[m_doneCount].kind} : std::nullopt;
}

void HistoryEditor::undo()
{
    if (m_doneCount == 0) {
        return;
    }
    m_offer.withdraw();
    Step& step = m_steps[--m_doneCount];
    step.isDone = false;
    follow(step, replace(step.after, step.before));
}

void HistoryEditor::redo()
{
    if (m_doneCount == m_steps.size()) {
        return;
    }
    m_offer.withdraw();
    Step& step = m_steps[m_doneCount++];
    step.isDone = true;
    follow(step, replace(step.before, step.after));
}

bool HistoryEditor::carryOut(StepKind kind, std::vector<KeptSession> before, std::vector<KeptSession> after)
{
    m_offer.withdraw();
    holdOrder(before, after);
    m_steps.erase(m_steps.begin() + static_cast<std::ptrdiff_t>(m_doneCount), m_steps.end());
    if (m_steps.size() == mostSteps) {
        m_steps.pop_front();
    }
    m_steps.push_back({kind, std::move(before), std::move(after)});
    m_doneCount = m_steps.size();
    Step& step = m_steps.back();
    const std::uint64_t edit = replace(step.before, step.after);
    follow(step, edit);
    return m_refused != edit;
}

void HistoryEditor::follow(Step& step, std::uint64_t edit)
{
    step.edit = edit;
    Q_EMIT stepsChanged();
    if (m_refused == edit) { // before it was known whose it is
        editTakenBack(edit);
    }
}

// What is known comes before the record that it is about, and goes after it, so that a crash between the two
// files leaves a record with all that is known of it.
std::uint64_t HistoryEditor::replace(const std::vector<KeptSession>& before,
                                     const std::vector<KeptSession>& after)
{
    std::set<Uuid> staying;
    SessionDetailsById coming;
    std::vector<SessionRecord> placed;
    placed.reserve(after.size());
    for (const KeptSession& session : after) {
        staying.insert(session.record.id);
        if (!(session.details == m_details.of(session.record.id))) {
            coming[session.record.id] = session.details;
        }
        placed.push_back(session.record);
    }
    std::vector<Uuid> removed;
    SessionDetailsById going;
    for (const KeptSession& session : before) {
        if (!staying.contains(session.record.id)) {
            removed.push_back(session.record.id);
            if (!session.details.isEmpty()) {
                going[session.record.id] = {};
            }
        }
    }
    m_details.set(coming);
    const std::uint64_t edit = m_records.edit(removed, std::move(placed));
    m_details.set(going);
    Q_EMIT changed();
    return edit;
}

// Records that end at the same instant stand in the order in which they came. So that a record comes back in
// its own place, the others of its instant come back with it.
void HistoryEditor::holdOrder(std::vector<KeptSession>& before, std::vector<KeptSession>& after) const
{
    std::set<Uuid> concerned;
    std::set<Instant, std::greater<>> instants; // the latest first, as in the history
    for (const auto* sessions : {&before, &after}) {
        for (const KeptSession& session : *sessions) {
            concerned.insert(session.record.id);
        }
    }
    for (const KeptSession& session : before) {
        instants.insert(session.record.endedAt);
    }
    if (instants.size() == m_records.sessions().size()) {
        return;
    }
    std::vector<KeptSession> beside;
    for (const Instant instant : instants) {
        SessionRecord key;
        key.endedAt = instant;
        const auto [first, last] =
            std::equal_range(m_records.sessions().begin(), m_records.sessions().end(), key, endedLater);
        for (auto record = first; record != last; ++record) {
            if (!concerned.contains(record->id)) {
                beside.push_back(kept(*record));
            }
        }
    }
    if (beside.empty()) {
        return;
    }
    after.insert(after.end(), beside.begin(), beside.end());
    std::vector<Uuid> all;
    for (const auto* sessions : {&before, &beside}) {
        for (const KeptSession& session : *sessions) {
            all.push_back(session.record.id);
        }
    }
    before = keptOf(std::move(all));
}

void HistoryEditor::offer(UndoOffer::Kind kind, std::size_t count)
{
    m_offer.make({kind, count, [this] {
                      undo();
                  }});
}

// The record as the details say that it is; none where it already is so, or where they know nothing of it.
std::optional<SessionRecord> HistoryEditor::settled(const SessionRecord& record,
                                                    const SessionDetails& details) const
{
    if (!details.beforeAbsences) {
        return std::nullopt;
    }
    const SessionRecord wanted = withAbsences(*details.beforeAbsences, details);
    if (wanted == record) {
        return std::nullopt;
    }
    // The record is from before the latest decision.
    for (std::size_t index = 0; index < details.absences.size(); ++index) {
        for (const AbsenceDecision decision : allCases<AbsenceDecision>()) {
            SessionDetails earlier = details;
            earlier.absences[index].decision = decision;
            if (withAbsences(*details.beforeAbsences, earlier) == record) {
                return wanted;
            }
        }
    }
    return std::nullopt;
}

void HistoryEditor::settle()
{
    const auto isDecided = [](const SessionDetails& details) {
        return isOf(details, AbsenceDecision::doNotCount) || isOf(details, AbsenceDecision::endAtStart);
    };
    std::set<Uuid> concerned;
    for (const auto& [id, details] : m_details.all()) {
        if (isDecided(details) || details.beforeAbsences) {
            concerned.insert(id);
        }
    }
    if (concerned.empty()) {
        return;
    }
    std::vector<SessionRecord> wanted;
    SessionDetailsById known;
    for (const SessionRecord& record : m_records.sessions()) {
        if (!concerned.contains(record.id)) {
            continue;
        }
        const SessionDetails& details = m_details.of(record.id);
        if (const auto other = settled(record, details)) {
            wanted.push_back(*other);
        } else if (isDecided(details) && !details.beforeAbsences) {
            // It ended before the details had been read: while it ran, what does not count was made a pause.
            SessionDetails ended = details;
            ended.beforeAbsences = withoutAbsences(record, details);
            known[record.id] = ended;
        }
    }
    m_details.set(known);
    if (!wanted.empty()) {
        m_records.edit({}, std::move(wanted));
        Q_EMIT changed();
    }
}

void HistoryEditor::editTakenBack(std::uint64_t number)
{
    const auto step = std::find_if(m_steps.begin(), m_steps.end(),
                                   [number](const Step& candidate) { return candidate.edit == number; });
    if (step == m_steps.end()) {
        m_refused = number;
        return;
    }
    SessionDetailsById details;
    for (const KeptSession& session : step->isDone ? step->after : step->before) {
        details[session.record.id] = {};
    }
    for (const KeptSession& session : step->isDone ? step->before : step->after) {
        details[session.record.id] = session.details;
    }
    m_details.set(details);
    m_doneCount -= step->isDone ? 1 : 0;
    m_steps.erase(step);
    m_offer.withdraw();
    Q_EMIT changed();
    Q_EMIT stepsChanged();
}

} // namespace brevlin
