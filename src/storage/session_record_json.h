#pragma once

#include "storage/json/json_reader.h"
#include "storage/json/json_writer.h"
#include "storage/session_record_fields.h"

#include <string_view>

namespace brevlin {

// One record as an object of fifteen keys, alike in every document.

template <typename T>
const T& storedForm(const T& value)
{
    return value;
}
template <typename E>
std::string_view storedForm(const StoredRawValue<E>& value)
{
    return value.text();
}

inline void write(JsonWriter& writer, const SessionRecord& record)
{
    writer.beginObject();
    forEachField(sessionRecordFields,
                 [&](const auto& field) { writer.field(field.name, storedForm(field.of(record))); });
    writer.endObject();
}

template <typename E>
bool read(JsonValue value, StoredRawValue<E>& result)
{
    std::string_view text;
    const bool isText = read(value, text);
    result = StoredRawValue<E>(text);
    return isText;
}
inline bool read(JsonValue value, SharedText& result)
{
    std::string_view text;
    const bool isText = read(value, text);
    result = SharedText(text);
    return isText;
}

} // namespace brevlin
