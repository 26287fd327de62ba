#include "core/session_record.h"

namespace brevlin {

SessionRecord::SessionRecord(const FinishedSession& session)
    : endedAt(session.endedAt)
    , effectiveDuration(session.effectiveDuration)
    , phaseRawValue(session.phase)
    , outcomeRawValue(session.outcome)
    , id(session.id)
    , plannedStartAt(session.startedAt)
    , actualStartAt(session.startedAt)
    , scheduledEndAt(session.scheduledEndAt.value_or(session.endedAt))
    , plannedDuration(session.plannedDuration)
    , pauseDuration(session.pauseDuration)
    , cycleIndex(session.cycleIndex)
    , interruptionCount(session.interruptionCount)
    , intention(session.intention ? SharedText(*session.intention) : SharedText())
    , timeZoneIdentifierAtStart(session.timeZoneIdentifierAtStart)
    , completedWhileAway(session.completedWhileAway)
{}

} // namespace brevlin
