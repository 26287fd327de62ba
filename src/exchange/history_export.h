#pragma once

#include "core/calendar.h"
#include "core/expected.h"
#include "core/language.h"
#include "core/raw_value.h"
#include "core/session_details.h"
#include "core/session_record.h"
#include "exchange/instant_text.h"
#include "platform/durable_file.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// A form in which the history goes to other programs.
enum class ExportFormat { csv, json, ics, timewarrior };

template <>
struct RawValues<ExportFormat>
{
    static constexpr std::array cases{
        RawValueCase<ExportFormat>{ExportFormat::csv, "csv"},
        RawValueCase<ExportFormat>{ExportFormat::json, "json"},
        RawValueCase<ExportFormat>{ExportFormat::ics, "ics"},
        RawValueCase<ExportFormat>{ExportFormat::timewarrior, "timewarrior"},
    };
};

/// Which records go out. As in the statistics, a record belongs to the local date of its end.
struct ExportSelection
{
    std::optional<LocalDay> first;
    std::optional<LocalDay> last;   ///< inclusive
    std::vector<TimerPhase> phases; ///< none: all of them, those of later releases too
};

struct ExportOptions
{
    ExportFormat format = ExportFormat::csv;
    ExportSelection selection;
    bool hasByteOrderMark = false; ///< for spreadsheets that read CSV as UTF-8 only with one; csv alone
    Calendar calendar;             ///< of the user: whose local dates count
    AppLanguage language = AppLanguage::english; ///< of the titles of events without an intention
    ZoneLookup zones;
};

struct ExportError
{
    enum class Reason {
        stopped,       ///< the sink wanted no more
        noLibrary,     ///< the library that writes calendars is not installed
        notExpressible ///< a record holds what the form cannot
    };

    Reason reason = Reason::stopped;
    std::string description; ///< in the system's words; may be empty

    bool operator==(const ExportError&) const = default;
};

/// Hands the chosen records to the sink piece by piece, the earliest first; they are sorted as in the
/// history, latest end first.
///
/// csv: all records; RFC 4180, UTF-8. json: the same fields, and what else is stored, so that nothing is
/// lost. ics: an event for each focus phase. timewarrior: the completed focus phases without their pauses, as
/// much as the statistics count; none overlaps another.
///
/// Gives how many records went out.
Expected<std::size_t, ExportError> exportHistory(std::span<const SessionRecord> records,
                                                 const SessionDetailsById& details,
                                                 const ExportOptions& options, const PieceSink& sink);

/// In one sentence without the system's words.
BilingualText sentence(ExportError::Reason reason);

} // namespace brevlin
