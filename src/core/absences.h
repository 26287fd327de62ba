#pragma once

#include "core/session_details.h"
#include "core/session_record.h"

#include <cstddef>

namespace brevlin {

/// How much of the absence fell into the time that the record counts: within the phase, pauses left out. An
/// absence that lasts counts for nothing.
Seconds countedLength(const Absence& absence, const SessionRecord& record,
                      const std::vector<DateInterval>& pauses);

/// What becomes of a record by what was decided of its absences: the ones that do not count are pauses, and
/// the phase ended early when the first began that is said to have ended it. An absence that is undecided
/// counts, as one that is kept.
SessionRecord withAbsences(const SessionRecord& beforeAbsences, const SessionDetails& details);

/// The record of a phase whose absences that do not count were made pauses while it ran, as it would be
/// without them.
SessionRecord withoutAbsences(const SessionRecord& record, const SessionDetails& details);

} // namespace brevlin
