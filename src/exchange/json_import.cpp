#include "exchange/csv_columns.h"
#include "exchange/import_builder.h"
#include "exchange/instant_text.h"
#include "exchange/json_elements.h"
#include "exchange/json_fields.h"
#include "storage/json/json_reader.h"

#include <cstdint>
#include <string>
#include <utility>

namespace brevlin {

namespace {

using Problem = std::optional<ImportProblem>;

/// Reads the members of one object; the first that is wrong says why the row is unreadable.
class RowReader final
{
public:
    explicit RowReader(JsonValue value) : m_object(value) {}

    template <typename T>
    void optional(const char* key, T& result, ImportProblem problem)
    {
        const auto value = m_object.find(key);
        require(!value || value->is_null() || read(*value, result), problem);
    }
    void optional(const char* key, SharedText& result, ImportBuilder& builder)
    {
        std::string_view text = result.view();
        optional(key, text, ImportProblem::malformed);
        result = builder.shared(text);
    }
    template <typename E>
    void optional(const char* key, StoredRawValue<E>& result)
    {
        std::string_view text = result.text();
        optional(key, text, ImportProblem::malformed);
        result = StoredRawValue<E>(std::string(text));
    }
    /// A missing one leaves the result as it is.
    void optional(const char* key, Instant& result)
    {
        if (has(key)) {
            required(key, result);
        }
    }
    void required(const char* key, Instant& result)
    {
        std::string_view text;
        optional(key, text, ImportProblem::notADate);
        const auto instant = instantFromText(text);
        require(instant.has_value(), ImportProblem::notADate);
        result = instant.value_or(result);
    }
    /// Calls with each element of the array; a missing one has none.
    template <typename Read>
    void each(const char* key, Read readElement)
    {
        simdjson::dom::array array;
        const auto value = m_object.find(key);
        require(!value || value->get(array) == simdjson::SUCCESS, ImportProblem::malformed);
        if (value && !m_problem) {
            for (const JsonValue element : array) {
                RowReader reader(element);
                require(element.is_object(), ImportProblem::malformed);
                readElement(reader);
                adopt(reader.problem());
            }
        }
    }
    bool has(const char* key) const
    {
        const auto value = m_object.find(key);
        return value && !value->is_null();
    }
    std::optional<JsonValue> find(const char* key) const { return m_object.find(key); }
    void require(bool condition, ImportProblem problem)
    {
        if (!condition && !m_problem) {
            m_problem = problem;
        }
    }
    void adopt(Problem problem) { require(!problem, problem.value_or(ImportProblem::malformed)); }
    Problem problem() const { return m_problem; }

private:
    JsonObjectReader m_object;
    Problem m_problem;
};

void readRecord(RowReader& row, SessionRecord& record, ImportBuilder& builder)
{
    row.required(jsonField::start, record.actualStartAt);
    row.required(jsonField::end, record.endedAt);
    row.optional(jsonField::id, record.id, ImportProblem::notAnIdentifier);
    row.optional(jsonField::phase, record.phaseRawValue);
    row.optional(jsonField::outcome, record.outcomeRawValue);
    row.optional(jsonField::pausedSeconds, record.pauseDuration, ImportProblem::notANumber);
    record.effectiveDuration = record.endedAt - record.actualStartAt - record.pauseDuration;
    row.optional(jsonField::effectiveSeconds, record.effectiveDuration, ImportProblem::notANumber);
    record.plannedDuration = record.effectiveDuration;
    row.optional(jsonField::plannedSeconds, record.plannedDuration, ImportProblem::notANumber);
    row.optional(jsonField::interruptions, record.interruptionCount, ImportProblem::notANumber);
    row.optional(jsonField::intention, record.intention, builder);
    record.timeZoneIdentifierAtStart = builder.shared(builder.zone()->identifier());
    row.optional(jsonField::timeZone, record.timeZoneIdentifierAtStart, builder);
    record.plannedStartAt = record.actualStartAt;
    row.optional(jsonField::plannedStart, record.plannedStartAt);
    record.scheduledEndAt = record.actualStartAt + record.plannedDuration + record.pauseDuration;
    row.optional(jsonField::scheduledEnd, record.scheduledEndAt);
    row.optional(jsonField::cycle, record.cycleIndex, ImportProblem::notANumber);
    record.completedWhileAway = record.outcomeRawValue == SessionOutcome::completedWhileAway;
    row.optional(jsonField::completedAway, record.completedWhileAway, ImportProblem::malformed);
}

void readEarlier(RowReader& row, const char* key, std::optional<SessionRecord>& record,
                 ImportBuilder& builder)
{
    if (row.has(key)) {
        const JsonValue value = *row.find(key);
        RowReader reader(value);
        row.require(value.is_object(), ImportProblem::malformed);
        readRecord(reader, record.emplace(), builder);
        row.adopt(reader.problem());
    }
}

void readDetails(RowReader& row, SessionDetails& details, ImportBuilder& builder)
{
    row.each(jsonField::pauses, [&details](RowReader& each) {
        DateInterval& pause = details.pauses.emplace_back();
        each.required(jsonField::start, pause.start);
        each.required(jsonField::end, pause.end);
    });
    row.each(jsonField::absences, [&details](RowReader& each) {
        Absence& absence = details.absences.emplace_back();
        each.required(jsonField::start, absence.start);
        if (each.has(jsonField::end)) {
            each.required(jsonField::end, absence.end.emplace());
        }
        each.optional(jsonField::decision, absence.decision, ImportProblem::malformed);
    });
    readEarlier(row, jsonField::asRecorded, details.asRecorded, builder);
    readEarlier(row, jsonField::beforeAbsences, details.beforeAbsences, builder);
}

Problem readOwn(JsonValue value, std::size_t line, ImportBuilder& builder)
{
    RowReader row(value);
    SessionRecord record;
    SessionDetails details;
    readRecord(row, record, builder);
    readDetails(row, details, builder);
    if (row.problem()) {
        return row.problem();
    }
    if (row.has(jsonField::id)) {
        builder.add(std::move(record), std::move(details), line);
    } else {
        builder.addNameless(std::move(record), line);
    }
    return std::nullopt;
}

Problem readInterval(JsonValue value, std::size_t line, ImportBuilder& builder)
{
    RowReader row(value);
    ForeignInterval interval;
    std::string_view annotation;
    std::vector<std::string> tags;
    row.required("start", interval.start);
    row.require(row.has("end"), ImportProblem::stillRuns);
    row.required("end", interval.end);
    row.optional("annotation", annotation, ImportProblem::malformed);
    simdjson::dom::array array;
    if (row.has("tags") && row.find("tags")->get(array) == simdjson::SUCCESS) {
        for (const JsonValue tag : array) {
            std::string_view text;
            row.require(read(tag, text), ImportProblem::malformed);
            tags.emplace_back(text);
        }
    }
    if (row.problem()) {
        return row.problem();
    }
    interval.intention = intentionWithTags(annotation, tags);
    interval.name = "timewarrior " + std::to_string(nearestUnixSecond(interval.start)) + " " +
                    std::to_string(nearestUnixSecond(interval.end));
    builder.add(interval, line);
    return std::nullopt;
}

template <typename ReadElement>
bool readElements(std::string_view text, ImportBuilder& builder, ReadElement readElement)
{
    simdjson::dom::parser parser;
    JsonElements elements(text);
    std::string padded;
    while (elements.next()) {
        padded.reserve(elements.element().size() + simdjson::SIMDJSON_PADDING);
        padded = elements.element();
        JsonValue value;
        if (!elements.isComplete() ||
            parser.parse(padded.data(), padded.size(),
                         padded.capacity() - padded.size() < simdjson::SIMDJSON_PADDING)
                    .get(value) != simdjson::SUCCESS) {
            builder.refuse(elements.line(), ImportProblem::malformed);
            elements.goOnAtNextLine();
        } else if (!value.is_object()) {
            builder.refuse(elements.line(), ImportProblem::malformed);
        } else if (const Problem problem = readElement(value, elements.line(), builder)) {
            builder.refuse(elements.line(), *problem);
        }
        if (!builder.goesOn(elements.position(), text.size())) {
            return false;
        }
    }
    return true;
}

} // namespace

bool readJson(std::string_view text, ImportBuilder& builder)
{
    return readElements(text, builder, readOwn);
}

bool readTimewarrior(std::string_view text, ImportBuilder& builder)
{
    return readElements(text, builder, readInterval);
}

} // namespace brevlin
