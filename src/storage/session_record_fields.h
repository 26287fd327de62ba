#pragma once

#include "core/session_record.h"
#include "storage/stored_field.h"

#include <tuple>

namespace brevlin {

/// Every field of a record, in the sorted order of the history file.
inline constexpr std::tuple sessionRecordFields{
    StoredField{"actualStartAt", &SessionRecord::actualStartAt},
    StoredField{"completedWhileAway", &SessionRecord::completedWhileAway},
    StoredField{"cycleIndex", &SessionRecord::cycleIndex},
    StoredField{"effectiveDuration", &SessionRecord::effectiveDuration},
    StoredField{"endedAt", &SessionRecord::endedAt},
    StoredField{"id", &SessionRecord::id},
    StoredField{"intention", &SessionRecord::intention},
    StoredField{"interruptionCount", &SessionRecord::interruptionCount},
    StoredField{"outcomeRawValue", &SessionRecord::outcomeRawValue},
    StoredField{"pauseDuration", &SessionRecord::pauseDuration},
    StoredField{"phaseRawValue", &SessionRecord::phaseRawValue},
    StoredField{"plannedDuration", &SessionRecord::plannedDuration},
    StoredField{"plannedStartAt", &SessionRecord::plannedStartAt},
    StoredField{"scheduledEndAt", &SessionRecord::scheduledEndAt},
    StoredField{"timeZoneIdentifierAtStart", &SessionRecord::timeZoneIdentifierAtStart},
};

} // namespace brevlin
