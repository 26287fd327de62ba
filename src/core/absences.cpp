#include "core/absences.h"

#include <algorithm>

namespace brevlin {

namespace {

Seconds overlap(const DateInterval& one, const DateInterval& other)
{
    return std::max(std::min(one.end, other.end) - std::max(one.start, other.start), Seconds::zero());
}

void makePause(SessionRecord& record, Seconds length)
{
    if (length <= Seconds::zero()) {
        return;
    }
    record.effectiveDuration = std::max(record.effectiveDuration - length, Seconds::zero());
    record.pauseDuration += length;
    ++record.interruptionCount;
}

void endAt(SessionRecord& record, Instant end, const std::vector<DateInterval>& pauses)
{
    const DateInterval cut{end, record.endedAt};
    Seconds pausedInCut{0.0};
    int pausesInCut = 0;
    for (const DateInterval& pause : pauses) {
        pausedInCut += overlap(cut, pause);
        pausesInCut += pause.start >= end ? 1 : 0;
    }
    record.effectiveDuration =
        std::max(record.effectiveDuration - (cut.end - cut.start - pausedInCut), Seconds::zero());
    record.pauseDuration = std::max(record.pauseDuration - pausedInCut, Seconds::zero());
    record.interruptionCount = std::max<std::int64_t>(record.interruptionCount - pausesInCut, 0);
    record.endedAt = end;
    record.outcomeRawValue = SessionOutcome::endedEarly;
    record.completedWhileAway = false;
}

} // namespace

Seconds countedLength(const Absence& absence, const SessionRecord& record,
                      const std::vector<DateInterval>& pauses)
{
    if (!absence.end) {
        return Seconds::zero();
    }
    const DateInterval away{std::max(absence.start, record.actualStartAt),
                            std::min(*absence.end, record.endedAt)};
    Seconds length = std::max(away.end - away.start, Seconds::zero());
    for (const DateInterval& pause : pauses) {
        length -= overlap(away, pause);
    }
    return std::max(length, Seconds::zero());
}

SessionRecord withAbsences(const SessionRecord& beforeAbsences, const SessionDetails& details)
{
    SessionRecord record = beforeAbsences;
    for (const Absence& absence : details.absences) {
        const bool isWithin = absence.start < record.endedAt;
        if (absence.decision == AbsenceDecision::doNotCount && isWithin) {
            makePause(record, countedLength(absence, record, details.pauses));
        } else if (absence.decision == AbsenceDecision::endAtStart && isWithin) {
            endAt(record, std::max(absence.start, record.actualStartAt), details.pauses);
        }
    }
    return record;
}

SessionRecord withoutAbsences(const SessionRecord& record, const SessionDetails& details)
{
    SessionRecord result = record;
    for (const Absence& absence : details.absences) {
        const Seconds length = std::min(countedLength(absence, record, details.pauses), record.pauseDuration);
        if (absence.decision == AbsenceDecision::doNotCount && length > Seconds::zero()) {
            result.effectiveDuration += length;
            result.pauseDuration -= length;
            result.interruptionCount = std::max<std::int64_t>(result.interruptionCount - 1, 0);
        }
    }
    return result;
}

} // namespace brevlin
