#include "storage/session_details_document.h"

#include "storage/session_record_json.h"

#include <utility>

namespace brevlin {

namespace {

constexpr std::size_t usualEntry = 256; // characters

void write(JsonWriter& writer, const DateInterval& interval)
{
    writer.beginObject();
    writer.field("end", interval.end);
    writer.field("start", interval.start);
    writer.endObject();
}

void write(JsonWriter& writer, const Absence& absence)
{
    writer.beginObject();
    writer.field("decision", absence.decision);
    writer.field("end", absence.end);
    writer.field("start", absence.start);
    writer.endObject();
}

template <typename Items>
void writeArray(JsonWriter& writer, std::string_view key, const Items& items)
{
    if (items.empty()) {
        return;
    }
    writer.key(key);
    writer.beginArray();
    for (const auto& item : items) {
        write(writer, item);
    }
    writer.endArray();
}

void writeRecord(JsonWriter& writer, std::string_view key, const std::optional<SessionRecord>& record)
{
    if (record) {
        writer.key(key);
        brevlin::write(writer, *record);
    }
}

DocumentError entryError(std::size_t index, const DocumentError& error)
{
    return {"Entry " + std::to_string(index + 1) + ": " + error.description};
}

Expected<DateInterval, DocumentError> readPause(JsonValue value)
{
    DateInterval pause;
    JsonObjectReader reader(value);
    reader.required("start", pause.start);
    reader.required("end", pause.end);
    if (!reader.error() && pause.end < pause.start) {
        reader.refuse("end", "lies before the start");
    }
    return reader.finish(pause);
}

Expected<Absence, DocumentError> readAbsence(JsonValue value)
{
    Absence absence;
    JsonObjectReader reader(value);
    reader.required("start", absence.start);
    reader.optional("end", absence.end);
    reader.required("decision", absence.decision);
    if (!reader.error() && absence.end && *absence.end < absence.start) {
        reader.refuse("end", "lies before the start");
    }
    return reader.finish(absence);
}

template <typename Item>
void readArray(JsonObjectReader& reader, std::string_view key, std::vector<Item>& items,
               Expected<Item, DocumentError> (*readItem)(JsonValue))
{
    const auto value = reader.find(key);
    if (!value || value->is_null()) {
        return;
    }
    simdjson::dom::array array;
    if (value->get(array) != simdjson::SUCCESS) {
        reader.refuse(key, "has an unexpected value");
        return;
    }
    for (const JsonValue element : array) {
        auto item = readItem(element);
        if (!item) {
            reader.refuse(item.error());
            return;
        }
        items.push_back(*std::move(item));
    }
}

void readRecord(JsonObjectReader& reader, std::string_view key, std::optional<SessionRecord>& result)
{
    const auto value = reader.find(key);
    if (!value || value->is_null()) {
        return;
    }
    JsonObjectReader object(*value);
    SessionRecord record;
    forEachField(sessionRecordFields,
                 [&](const auto& field) { object.required(field.name, field.of(record)); });
    if (object.error()) {
        reader.refuse(*object.error());
    }
    result = std::move(record);
}

} // namespace

Expected<std::string, DocumentError> encodeSessionDetails(const SessionDetailsById& details)
{
    JsonWriter writer((details.size() + 1) * usualEntry);
    writer.beginObject();
    writer.key("details");
    writer.beginArray();
    for (const auto& [id, entry] : details) {
        writer.beginObject();
        writeArray(writer, "absences", entry.absences);
        writeRecord(writer, "asRecorded", entry.asRecorded);
        writeRecord(writer, "beforeAbsences", entry.beforeAbsences);
        writer.field("id", id);
        writeArray(writer, "pauses", entry.pauses);
        writer.endObject();
    }
    writer.endArray();
    writer.field("version", sessionDetailsVersion);
    writer.endObject();
    return std::move(writer).finish();
}

Expected<SessionDetailsById, DocumentError> decodeSessionDetails(const std::string& document)
{
    const auto json = JsonDocument::parse(document);
    if (!json) {
        return Unexpected{json.error()};
    }
    JsonObjectReader reader(json->root());
    const simdjson::dom::array array = reader.versionedArray("details", sessionDetailsVersion);
    if (reader.error()) {
        return Unexpected{*reader.error()};
    }
    SessionDetailsById details;
    std::size_t index = 0;
    for (const JsonValue value : array) {
        JsonObjectReader entryReader(value);
        Uuid id;
        SessionDetails entry;
        entryReader.required("id", id);
        readArray(entryReader, "pauses", entry.pauses, readPause);
        readArray(entryReader, "absences", entry.absences, readAbsence);
        readRecord(entryReader, "asRecorded", entry.asRecorded);
        readRecord(entryReader, "beforeAbsences", entry.beforeAbsences);
        if (entryReader.error()) {
            return Unexpected{entryError(index, *entryReader.error())};
        }
        details.emplace(id, std::move(entry));
        ++index;
    }
    return details;
}

} // namespace brevlin
