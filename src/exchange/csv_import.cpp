#include "exchange/csv_table.h"
#include "exchange/import_builder.h"
#include "exchange/instant_text.h"

#include <cmath>
#include <utility>

namespace brevlin {

namespace {

bool isOurs(const CsvTable& table)
{
    return table.has("start") && table.has("end");
}

bool isOfToggl(const CsvTable& table)
{
    return table.has("start date") && table.has("start time") &&
           (table.has("end date") || table.has("stop date")) &&
           (table.has("end time") || table.has("stop time"));
}

bool readSeconds(std::string_view cell, Seconds& length)
{
    double number = length.count();
    const bool isNumber = readNumber(cell, number) && std::isfinite(number);
    length = Seconds{number};
    return isNumber;
}

void readOwnRow(const CsvTable& table, ImportBuilder& builder)
{
    SessionRecord record;
    const auto start = instantFromText(table.cell({"start"}));
    const auto end = instantFromText(table.cell({"end"}));
    const std::string_view idText = table.cell({"id"});
    const auto id = Uuid::fromText(idText);
    if (!start || !end || (!id && !idText.empty())) {
        builder.refuse(table.line(), start && end ? ImportProblem::notAnIdentifier : ImportProblem::notADate);
        return;
    }
    bool areNumbers = readSeconds(table.cell({"paused_seconds"}), record.pauseDuration);
    record.effectiveDuration = *end - *start - record.pauseDuration;
    areNumbers = readSeconds(table.cell({"effective_seconds"}), record.effectiveDuration) && areNumbers;
    record.plannedDuration = record.effectiveDuration;
    areNumbers = readSeconds(table.cell({"planned_seconds"}), record.plannedDuration) && areNumbers;
    areNumbers = readNumber(table.cell({"interruptions"}), record.interruptionCount) && areNumbers;
    if (!areNumbers) {
        builder.refuse(table.line(), ImportProblem::notANumber);
        return;
    }
    if (const std::string_view phase = table.cell({"phase"}); !phase.empty()) {
        record.phaseRawValue = StoredRawValue<TimerPhase>(phase);
    }
    if (const std::string_view outcome = table.cell({"outcome"}); !outcome.empty()) {
        record.outcomeRawValue = StoredRawValue<SessionOutcome>(outcome);
    }
    record.actualStartAt = record.plannedStartAt = *start;
    record.endedAt = *end;
    record.scheduledEndAt = *start + record.plannedDuration + record.pauseDuration;
    record.completedWhileAway = record.outcomeRawValue == SessionOutcome::completedWhileAway;
    record.intention = builder.shared(table.cell({"intention"}));
    const std::string_view zone = table.cell({"time_zone"});
    record.timeZoneIdentifierAtStart = builder.shared(zone.empty() ? builder.zone()->identifier() : zone);
    if (id) {
        record.id = *id;
        builder.add(std::move(record), {}, table.line());
    } else {
        builder.addNameless(std::move(record), table.line());
    }
}

} // namespace

std::optional<ImportFormat> csvFormat(std::string_view text)
{
    const CsvTable table(text);
    if (isOfToggl(table)) {
        return ImportFormat::toggl;
    }
    return isOurs(table) ? std::optional{ImportFormat::csv} : std::nullopt;
}

bool readCsv(std::string_view text, ImportBuilder& builder)
{
    return readRows(text, builder, readOwnRow);
}

} // namespace brevlin
