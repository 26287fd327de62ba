#pragma once

#include "core/session_details.h"
#include "core/session_record.h"

#include <optional>
#include <span>
#include <string>

namespace brevlin {

/// What a user may say of a phase afterwards.
struct SessionCorrection
{
    TimerPhase phase = TimerPhase::focus;
    SessionOutcome outcome = SessionOutcome::completed;
    Instant start;
    Instant end;
    std::string intention; ///< empty for none

    bool operator==(const SessionCorrection&) const = default;
};

/// As the record stands; strings of a later release read as a short break that was skipped.
SessionCorrection correctionOf(const SessionRecord& record);

enum class CorrectionProblem { endsBeforeStart, endsInFuture };

/// Why there can be no such record; the first reason.
std::optional<CorrectionProblem> problemOf(const SessionCorrection& correction, Instant now);

/// The record that the correction makes of this one. Where its times are other ones, what counts as done is
/// the time between them without the pauses, whose instants the details may know; else it stays as it is.
SessionRecord corrected(const SessionRecord& record, const SessionCorrection& correction,
                        const SessionDetails& details);

/// A record of a phase that nobody recorded, with a new identifier.
SessionRecord addedRecord(const SessionCorrection& correction, const std::string& timeZoneIdentifier);

/// The record with the latest end, other than that of the identifier, that shares more than a second with
/// this stretch; none where there is none. The records are sorted as in the history, latest end first.
const SessionRecord* overlapping(std::span<const SessionRecord> records, const DateInterval& stretch,
                                 const std::optional<Uuid>& except);

} // namespace brevlin
