#pragma once

#include "core/calendar.h"
#include "core/session_record.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace brevlin {

enum class FocusGrouping { intention, label };

/// What the completed focus phases for one thing add up to.
struct FocusGroup
{
    std::string name; ///< an intention, or a label without its sign; empty for the phases that have none
    Seconds duration{0.0};
    std::int64_t minutes = 0; ///< whole ones
    double share = 0.0;       ///< of the period's focus time, 0 to 1
    std::int64_t phases = 0;

    bool operator==(const FocusGroup&) const = default;
};

/// What the focus time of a period was for. Counts what the period's total counts.
struct FocusBreakdown
{
    std::vector<FocusGroup> groups; ///< the longest first, of equals the newer one; those without a name last
    bool isNamed = false;           ///< some phase has an intention
    bool overlaps = false;          ///< some phase counts in more than one group

    bool operator==(const FocusBreakdown&) const = default;
};

/// The records are sorted as in the history, latest end first. By intention, durations add up to the period's
/// and minutes to its whole minutes, a lost one going to the groups that lack least. By label, a phase counts
/// under each of its labels, and each group has the whole minutes of its own time; letter case does not keep
/// labels apart, and the newest spelling names them.
FocusBreakdown focusBreakdown(std::span<const SessionRecord> sessions, const DateInterval& interval,
                              FocusGrouping grouping);

} // namespace brevlin
