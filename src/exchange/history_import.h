#pragma once

#include "core/expected.h"
#include "core/language.h"
#include "core/raw_value.h"
#include "core/session_details.h"
#include "core/session_record.h"
#include "core/time_zone_rules.h"

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// A form in which a history comes in.
enum class ImportFormat {
    csv,        ///< our own
    json,       ///< our own
    toggl,      ///< the CSV of Toggl's detailed report
    timewarrior ///< what `timew export` writes
};

template <>
struct RawValues<ImportFormat>
{
    static constexpr std::array cases{
        RawValueCase<ImportFormat>{ImportFormat::csv, "csv"},
        RawValueCase<ImportFormat>{ImportFormat::json, "json"},
        RawValueCase<ImportFormat>{ImportFormat::toggl, "toggl"},
        RawValueCase<ImportFormat>{ImportFormat::timewarrior, "timewarrior"},
    };
};

/// Why a row cannot become a record.
enum class ImportProblem {
    malformed,       ///< it breaks the rules of its form, or is not UTF-8
    notADate,        ///< its start or end is none
    notAnIdentifier, ///< nor a missing one
    notANumber,
    stillRuns, ///< it has no end
    endsBeforeStart,
    endsInFuture
};
std::string_view title(ImportProblem problem, AppLanguage language);

template <>
struct RawValues<ImportProblem>
{
    static constexpr std::array cases{
        RawValueCase<ImportProblem>{ImportProblem::malformed, "malformed"},
        RawValueCase<ImportProblem>{ImportProblem::notADate, "notADate"},
        RawValueCase<ImportProblem>{ImportProblem::notAnIdentifier, "notAnIdentifier"},
        RawValueCase<ImportProblem>{ImportProblem::notANumber, "notANumber"},
        RawValueCase<ImportProblem>{ImportProblem::stillRuns, "stillRuns"},
        RawValueCase<ImportProblem>{ImportProblem::endsBeforeStart, "endsBeforeStart"},
        RawValueCase<ImportProblem>{ImportProblem::endsInFuture, "endsInFuture"},
    };
};

struct UnreadableRow
{
    std::size_t line = 0; ///< that it begins on, from 1
    ImportProblem problem = ImportProblem::malformed;

    bool operator==(const UnreadableRow&) const = default;
};

/// What an import would bring.
struct ImportPlan
{
    std::vector<SessionRecord> records; ///< the new ones, sorted as in the history: latest end first
    SessionDetailsById details;         ///< of these
    std::size_t knownCount = 0;         ///< rows that the history has already, or that are in the file twice
    std::vector<UnreadableRow> unreadable;
};

struct ImportOptions
{
    std::optional<ImportFormat> format; ///< none: as the content looks
    Instant now;
    TimeZone zone; ///< the system's: of times without an offset, and of what other programs recorded
    /// Told now and then how much has been read, 0 to 1; false ends the import. May be empty.
    std::function<bool(double)> progress;
};

struct ImportError
{
    enum class Reason {
        unreadable,     ///< the file
        unknownFormat,  ///< or not the one that it is said to have
        cancelled,      ///< by the progress
        historyUnknown, ///< it has not been read, so nobody can tell what is new
        notKept         ///< the disk refuses the changed history
    };

    Reason reason = Reason::unknownFormat;
    std::string description; ///< in the system's words; may be empty

    bool operator==(const ImportError&) const = default;
};
/// In one sentence without the system's words.
BilingualText sentence(ImportError::Reason reason);

template <>
struct RawValues<ImportError::Reason>
{
    static constexpr std::array cases{
        RawValueCase<ImportError::Reason>{ImportError::Reason::unreadable, "unreadable"},
        RawValueCase<ImportError::Reason>{ImportError::Reason::unknownFormat, "unknownFormat"},
        RawValueCase<ImportError::Reason>{ImportError::Reason::cancelled, "cancelled"},
        RawValueCase<ImportError::Reason>{ImportError::Reason::historyUnknown, "historyUnknown"},
        RawValueCase<ImportError::Reason>{ImportError::Reason::notKept, "notKept"},
    };
};

/// Reads the text and compares it with the history; changes nothing. A row is known by its identifier, and
/// one of another program also by its start and end to the second. Those have no identifier: they get one
/// made of what they tell of these, so that they stay known in another time zone and after they were
/// corrected.
Expected<ImportPlan, ImportError> planImport(std::string_view text, std::span<const SessionRecord> history,
                                             const ImportOptions& options);

/// Makes what the history has got since the comparison known rows of the plan.
void dropKnown(ImportPlan& plan, std::span<const SessionRecord> history);

} // namespace brevlin
