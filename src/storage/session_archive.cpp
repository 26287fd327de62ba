#include "storage/session_archive.h"

#include "storage/session_archive_scanner.h"
#include "storage/session_record_json.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

namespace brevlin {

namespace {

constexpr std::size_t fieldCount = std::tuple_size_v<decltype(sessionRecordFields)>;
constexpr std::array<std::string_view, fieldCount> keys =
    std::apply([](const auto&... field) { return std::array{field.name...}; }, sessionRecordFields);

bool readStored(JsonValue value, SharedText& result, TextPool& pool)
{
    std::string_view text;
    const bool isText = read(value, text);
    result = pool.shared(text);
    return isText;
}
template <typename T>
bool readStored(JsonValue value, T& result, TextPool& /*pool*/)
{
    return read(value, result);
}

template <std::size_t... index>
bool readField(std::size_t field, JsonValue value, SessionRecord& record, TextPool& pool,
               std::index_sequence<index...> /*all*/)
{
    bool isRead = false;
    (void)((field == index &&
            (isRead = readStored(value, std::get<index>(sessionRecordFields).of(record), pool), true)) ||
           ...);
    return isRead;
}

DocumentError recordError(std::size_t index, std::string_view key, std::string_view problem)
{
    return {"The key \"" + std::string(key) + "\" of record " + std::to_string(index + 1) + " " +
            std::string(problem)};
}

// Walks the fields once, expecting them in the order in which they are written: looking each of 15 keys up by
// name would take most of the time of loading a long history.
std::optional<DocumentError> readRecord(JsonValue value, std::size_t index, SessionRecord& record,
                                        TextPool& pool)
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
        if (!readField(field, position.value(), record, pool, std::make_index_sequence<fieldCount>())) {
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

void write(JsonWriter& writer, std::span<const SessionRecord> records, RecordOrder order)
{
    for (std::size_t index = 0; index < records.size(); ++index) {
        write(writer, records[order == RecordOrder::latestFirst ? index : records.size() - 1 - index]);
    }
}

constexpr std::size_t usualRecord = 512; // characters

} // namespace

Expected<std::string, DocumentError> encodeSessionArchive(std::span<const SessionRecord> records,
                                                          RecordOrder order)
{
    JsonWriter writer((records.size() + 1) * usualRecord);
    writer.beginObject();
    writer.key("sessions");
    writer.beginArray();
    write(writer, records, order);
    writer.endArray();
    writer.field("version", sessionArchiveVersion);
    writer.endObject();
    return std::move(writer).finish();
}

Expected<std::string, DocumentError> encodeSessionArchiveStart(std::span<const SessionRecord> records)
{
    JsonWriter writer((records.size() + 1) * usualRecord);
    writer.beginArray();
    write(writer, records, RecordOrder::latestLast);
    auto written = std::move(writer).finish();
    if (written) {
        written->replace(0, 1, sessionArchiveOpening);
        written->push_back(',');
    }
    return written;
}

Expected<std::vector<SessionRecord>, DocumentError> decodeSessionArchive(const std::string& document)
{
    const auto json = JsonDocument::parse(document);
    if (!json) {
        return Unexpected{json.error()};
    }
    JsonObjectReader reader(json->root());
    const simdjson::dom::array array = reader.versionedArray("sessions", sessionArchiveVersion);
    if (reader.error()) {
        return Unexpected{*reader.error()};
    }
    std::vector<SessionRecord> sessions;
    TextPool pool;
    // The library's count saturates at 16,777,215; beyond that the vector just grows.
    sessions.reserve(array.size() + spareSessionRecords);
    for (const JsonValue value : array) {
        const std::size_t index = sessions.size();
        if (auto error = readRecord(value, index, sessions.emplace_back(), pool)) {
            return Unexpected{*std::move(error)};
        }
    }
    if (!std::is_sorted(sessions.begin(), sessions.end(), endedLater)) {
        std::stable_sort(sessions.begin(), sessions.end(), endedLater);
    }
    return sessions;
}

} // namespace brevlin
