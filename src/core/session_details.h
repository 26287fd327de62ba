#pragma once

#include "core/calendar.h"
#include "core/raw_value.h"
#include "core/session_record.h"
#include "core/uuid.h"

#include <array>
#include <map>
#include <optional>
#include <vector>

namespace brevlin {

/// What the user said of the time for which the computer slept or was locked.
enum class AbsenceDecision {
    undecided,
    keep,       ///< it counts as if nobody had been away
    doNotCount, ///< it is a pause
    endAtStart  ///< the phase ended when it began
};

template <>
struct RawValues<AbsenceDecision>
{
    static constexpr std::array cases{
        RawValueCase<AbsenceDecision>{AbsenceDecision::undecided, "undecided"},
        RawValueCase<AbsenceDecision>{AbsenceDecision::keep, "keep"},
        RawValueCase<AbsenceDecision>{AbsenceDecision::doNotCount, "doNotCount"},
        RawValueCase<AbsenceDecision>{AbsenceDecision::endAtStart, "endAtStart"},
    };
};

/// A stretch of a focus phase that nobody was there for.
struct Absence
{
    Instant start;
    std::optional<Instant> end; ///< none while it lasts
    AbsenceDecision decision = AbsenceDecision::undecided;

    bool operator==(const Absence&) const = default;
};

/// What is known of a phase beside its record, from its start on. Most phases have none.
struct SessionDetails
{
    std::vector<DateInterval> pauses; ///< in their order, those of absences excepted; none overlaps another
    std::vector<Absence> absences;    ///< in their order
    /// The record before the first correction by hand.
    std::optional<SessionRecord> asRecorded;
    /// What the record is where nobody was ever away, once something was decided of an absence. The record of
    /// the history is what becomes of this one by the absences.
    std::optional<SessionRecord> beforeAbsences;

    bool operator==(const SessionDetails&) const = default;
    bool isEmpty() const { return *this == SessionDetails{}; }
};

/// By the identifier of the phase, which its record has too.
using SessionDetailsById = std::map<Uuid, SessionDetails>;

} // namespace brevlin
