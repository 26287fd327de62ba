#include "storage/session_archive.h"

#include "storage/json/json_reader.h"
#include "storage/json/json_writer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace brevlin {

namespace {

enum Field : std::size_t {
    actualStartAt,
    completedWhileAway,
    cycleIndex,
    effectiveDuration,
    endedAt,
    id,
    intention,
    interruptionCount,
    outcomeRawValue,
    pauseDuration,
    phaseRawValue,
    plannedDuration,
    plannedStartAt,
    scheduledEndAt,
    timeZoneIdentifierAtStart,
    fieldCount,
};

constexpr std::string_view opening = R"({"sessions":[)";

// In the order of Field, which is also the sorted order of the file.
constexpr std::array<std::string_view, fieldCount> keys{
    "actualStartAt",
    "completedWhileAway",
    "cycleIndex",
    "effectiveDuration",
    "endedAt",
    "id",
    "intention",
    "interruptionCount",
    "outcomeRawValue",
    "pauseDuration",
    "phaseRawValue",
    "plannedDuration",
    "plannedStartAt",
    "scheduledEndAt",
    "timeZoneIdentifierAtStart",
};

template <typename E>
bool readRawValue(JsonValue value, StoredRawValue<E>& result)
{
    std::string_view text;
    if (!read(value, text)) {
        return false;
    }
    result = StoredRawValue<E>(text);
    return true;
}

bool readField(std::size_t field, JsonValue value, SessionRecord& record)
{
    switch (field) {
    case actualStartAt:
        return read(value, record.actualStartAt);
    case completedWhileAway:
        return read(value, record.completedWhileAway);
    case cycleIndex:
        return read(value, record.cycleIndex);
    case effectiveDuration:
        return read(value, record.effectiveDuration);
    case endedAt:
        return read(value, record.endedAt);
    case id:
        return read(value, record.id);
    case intention:
        return read(value, record.intention);
    case interruptionCount:
        return read(value, record.interruptionCount);
    case outcomeRawValue:
        return readRawValue(value, record.outcomeRawValue);
    case pauseDuration:
        return read(value, record.pauseDuration);
    case phaseRawValue:
        return readRawValue(value, record.phaseRawValue);
    case plannedDuration:
        return read(value, record.plannedDuration);
    case plannedStartAt:
        return read(value, record.plannedStartAt);
    case scheduledEndAt:
        return read(value, record.scheduledEndAt);
    case timeZoneIdentifierAtStart:
        return read(value, record.timeZoneIdentifierAtStart);
    default:
        return true; // a key of a later release
    }
}

DocumentError recordError(std::size_t index, std::string_view key, std::string_view problem)
{
    return {"The key \"" + std::string(key) + "\" of record " + std::to_string(index + 1) + " " +
            std::string(problem)};
}

// Walks the fields once, expecting them in the order in which they are written: looking each of 15 keys up by
// name would take most of the time of loading a long history.
std::optional<DocumentError> readRecord(JsonValue value, std::size_t index, SessionRecord& record)
{
    simdjson::dom::object object;
    if (value.get(object) != simdjson::SUCCESS) {
        return DocumentError{"Record " + std::to_string(index + 1) + " is not a JSON object"};
    }
    constexpr unsigned allSeen = (1U << fieldCount) - 1;
    unsigned seen = 0;
    std::size_t expected = 0;
    for (auto position = object.begin(), end = object.end(); position != end; ++position) {
        const std::string_view key = position.key();
        std::size_t field = expected;
        if (expected == fieldCount || key != keys[expected]) {
            field = static_cast<std::size_t>(std::find(keys.begin(), keys.end(), key) - keys.begin());
        }
        const unsigned bit = 1U << field;
        if (field == fieldCount || (seen & bit) != 0) {
            continue; // unknown, or a second value for the key: the first one holds
        }
        if (!readField(field, position.value(), record)) {
            return recordError(index, keys[field], "has an unexpected value");
        }
        seen |= bit;
        expected = field + 1;
    }
    for (std::size_t field = 0; seen != allSeen && field < fieldCount; ++field) {
        if ((seen & (1U << field)) == 0) {
            return recordError(index, keys[field], "is missing");
        }
    }
    return std::nullopt;
}

void write(JsonWriter& writer, const SessionRecord& record)
{
    writer.beginObject();
    writer.field(keys[actualStartAt], record.actualStartAt);
    writer.field(keys[completedWhileAway], record.completedWhileAway);
    writer.field(keys[cycleIndex], record.cycleIndex);
    writer.field(keys[effectiveDuration], record.effectiveDuration);
    writer.field(keys[endedAt], record.endedAt);
    writer.field(keys[id], record.id);
    writer.field(keys[intention], record.intention);
    writer.field(keys[interruptionCount], record.interruptionCount);
    writer.field(keys[outcomeRawValue], record.outcomeRawValue.text());
    writer.field(keys[pauseDuration], record.pauseDuration);
    writer.field(keys[phaseRawValue], record.phaseRawValue.text());
    writer.field(keys[plannedDuration], record.plannedDuration);
    writer.field(keys[plannedStartAt], record.plannedStartAt);
    writer.field(keys[scheduledEndAt], record.scheduledEndAt);
    writer.field(keys[timeZoneIdentifierAtStart], record.timeZoneIdentifierAtStart);
    writer.endObject();
}

} // namespace

SessionArchiveText::SessionArchiveText()
{
    [[maybe_unused]] const auto encoded = encode({});
}

void SessionArchiveText::adopt(std::string document)
{
    m_buffer = std::move(document);
    m_begin = 0;
    m_canGrow = false;
}

Expected<void, DocumentError> SessionArchiveText::encode(const std::vector<SessionRecord>& sessions)
{
    // Room for the records of a few months; a short history does not need it.
    constexpr std::size_t mostRoom = std::size_t{1} << 18;
    constexpr std::size_t frame = 64;
    constexpr std::size_t usualRecord = 512;
    const std::size_t expectedSize = frame + sessions.size() * usualRecord;
    const std::size_t begin = std::min(expectedSize, mostRoom);
    JsonWriter writer(expectedSize, begin);
    writer.beginObject();
    writer.key("sessions");
    writer.beginArray();
    for (const SessionRecord& record : sessions) {
        write(writer, record);
    }
    writer.endArray();
    writer.field("version", sessionArchiveVersion);
    writer.endObject();
    auto text = std::move(writer).finish();
    if (!text) {
        return Unexpected{text.error()};
    }
    m_buffer = *std::move(text);
    m_begin = begin;
    m_canGrow = !sessions.empty();
    return {};
}

Expected<bool, DocumentError> SessionArchiveText::prepend(const SessionRecord& record)
{
    JsonWriter writer;
    write(writer, record);
    const auto written = std::move(writer).finish();
    if (!written) {
        return Unexpected{written.error()};
    }
    // The opening moves to the front, and the record with its comma takes its place.
    const std::size_t growth = written->size() + 1;
    if (!m_canGrow || growth > m_begin) {
        return false;
    }
    m_begin -= growth;
    char* at = std::copy(opening.begin(), opening.end(), m_buffer.data() + m_begin);
    at = std::copy(written->begin(), written->end(), at);
    *at = ',';
    return true;
}

Expected<std::vector<SessionRecord>, DocumentError> decodeSessionArchive(const std::string& document)
{
    const auto json = JsonDocument::parse(document);
    if (!json) {
        return Unexpected{json.error()};
    }
    JsonObjectReader reader(json->root());
    std::int64_t version = 0;
    reader.required("version", version);
    if (version > sessionArchiveVersion) {
        reader.refuse(DocumentError{"The file has the newer format version " + std::to_string(version)});
    }
    simdjson::dom::array array;
    if (const auto value = reader.find("sessions"); !value) {
        reader.refuse("sessions", "is missing");
    } else if (value->get(array) != simdjson::SUCCESS) {
        reader.refuse("sessions", "has an unexpected value");
    }
    if (reader.error()) {
        return Unexpected{*reader.error()};
    }
    std::vector<SessionRecord> sessions;
    // The library's count saturates at 16,777,215; beyond that the vector just grows.
    // With room for the records to come: growing moves all of them, on the main thread.
    constexpr std::size_t spareRecords = 512;
    sessions.reserve(array.size() + spareRecords);
    for (const JsonValue value : array) {
        const std::size_t index = sessions.size();
        if (auto error = readRecord(value, index, sessions.emplace_back())) {
            return Unexpected{*std::move(error)};
        }
    }
    if (!std::is_sorted(sessions.begin(), sessions.end(), endedLater)) {
        std::stable_sort(sessions.begin(), sessions.end(), endedLater);
    }
    return sessions;
}

} // namespace brevlin
