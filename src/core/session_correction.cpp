#include "core/session_correction.h"

#include <algorithm>

namespace brevlin {

namespace {

// Two phases that follow each other share the instant, and the clock was read twice.
constexpr Seconds closest{1.0};

Seconds pausesWithin(const SessionRecord& record, const SessionCorrection& correction,
                     const SessionDetails& details)
{
    const bool areKnown = !details.pauses.empty();
    Seconds paused = areKnown ? Seconds::zero() : record.pauseDuration;
    for (const DateInterval& pause : details.pauses) {
        const Seconds within = std::min(pause.end, correction.end) - std::max(pause.start, correction.start);
        paused += std::max(within, Seconds::zero());
    }
    for (const Absence& absence : details.absences) {
        if (areKnown && absence.decision == AbsenceDecision::doNotCount && absence.end) {
            const Seconds within =
                std::min(*absence.end, correction.end) - std::max(absence.start, correction.start);
            paused += std::max(within, Seconds::zero());
        }
    }
    return std::clamp(paused, Seconds::zero(), correction.end - correction.start);
}

} // namespace

SessionCorrection correctionOf(const SessionRecord& record)
{
    return {record.phase().value_or(TimerPhase::shortBreak),
            record.outcome().value_or(SessionOutcome::skipped), record.actualStartAt, record.endedAt,
            std::string(record.intention.view())};
}

std::optional<CorrectionProblem> problemOf(const SessionCorrection& correction, Instant now)
{
    if (correction.end < correction.start) {
        return CorrectionProblem::endsBeforeStart;
    }
    return correction.end > now ? std::optional{CorrectionProblem::endsInFuture} : std::nullopt;
}

SessionRecord corrected(const SessionRecord& record, const SessionCorrection& correction,
                        const SessionDetails& details)
{
    const SessionCorrection before = correctionOf(record);
    SessionRecord result = record;
    // What stays may be a string of a later release.
    if (correction.phase != before.phase) {
        result.phaseRawValue = correction.phase;
    }
    if (correction.outcome != before.outcome) {
        result.outcomeRawValue = correction.outcome;
        result.completedWhileAway = correction.outcome == SessionOutcome::completedWhileAway;
    }
    if (correction.intention != before.intention) {
        result.intention = correction.intention;
    }
    if (correction.start != before.start || correction.end != before.end) {
        const bool isMoved = correction.start != before.start;
        result.actualStartAt = correction.start;
        result.plannedStartAt = isMoved ? correction.start : record.plannedStartAt;
        result.endedAt = correction.end;
        result.pauseDuration = pausesWithin(record, correction, details);
        result.effectiveDuration = correction.end - correction.start - result.pauseDuration;
    }
    return result;
}

SessionRecord addedRecord(const SessionCorrection& correction, const std::string& timeZoneIdentifier)
{
    SessionRecord record;
    record.id = Uuid::random();
    record.phaseRawValue = correction.phase;
    record.outcomeRawValue = correction.outcome;
    record.completedWhileAway = correction.outcome == SessionOutcome::completedWhileAway;
    record.plannedStartAt = record.actualStartAt = correction.start;
    record.scheduledEndAt = record.endedAt = correction.end;
    record.plannedDuration = record.effectiveDuration = correction.end - correction.start;
    record.intention = correction.intention;
    record.timeZoneIdentifierAtStart = timeZoneIdentifier;
    return record;
}

const SessionRecord* overlapping(std::span<const SessionRecord> records, const DateInterval& stretch,
                                 const std::optional<Uuid>& except)
{
    for (const SessionRecord& record : records) {
        if (record.endedAt <= stretch.start + closest) {
            break; // all that follow ended earlier
        }
        const Seconds shared =
            std::min(record.endedAt, stretch.end) - std::max(record.actualStartAt, stretch.start);
        if (shared > closest && record.id != except) {
            return &record;
        }
    }
    return nullptr;
}

} // namespace brevlin
