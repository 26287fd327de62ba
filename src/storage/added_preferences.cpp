#include "storage/added_preferences.h"

#include "storage/json/json_reader.h"
#include "storage/json/json_writer.h"
#include "storage/stored_field.h"

#include <string_view>
#include <tuple>
#include <utility>

namespace brevlin {

namespace {

constexpr std::tuple fields{
    StoredField{"asksAboutAbsences", &AddedPreferences::asksAboutAbsences},
    StoredField{"silencesNotifications", &AddedPreferences::silencesNotifications},
};

bool isKnown(std::string_view key)
{
    bool isKnown = false;
    forEachField(fields, [&](const auto& field) { isKnown = isKnown || field.name == key; });
    return isKnown;
}

std::string unknownFields(JsonValue root)
{
    std::string result;
    for (const auto& [key, value] : simdjson::dom::object(root)) {
        JsonWriter name;
        name.value(key);
        if (const auto quoted = std::move(name).finish(); quoted && !isKnown(key)) {
            result += ',' + *quoted + ':' + simdjson::minify(value);
        }
    }
    return result;
}

} // namespace

Expected<std::string, DocumentError> encode(const AddedPreferences& preferences)
{
    JsonWriter writer;
    writer.beginObject();
    forEachField(fields, [&](const auto& field) { writer.field(field.name, field.of(preferences)); });
    writer.endObject();
    auto document = std::move(writer).finish();
    if (document) {
        document->insert(document->size() - 1, preferences.unknownFields);
    }
    return document;
}

Expected<AddedPreferences, DocumentError> decodeAddedPreferences(const std::string& document)
{
    const auto json = JsonDocument::parse(document);
    if (!json) {
        return Unexpected{json.error()};
    }
    AddedPreferences preferences;
    JsonObjectReader reader(json->root());
    forEachField(fields, [&](const auto& field) { reader.optional(field.name, field.of(preferences)); });
    if (!reader.error()) {
        preferences.unknownFields = unknownFields(json->root());
    }
    return reader.finish(preferences);
}

AddedPreferences AddedPreferencesStore::load()
{
    const auto document = m_document.read();
    return document ? decode(*document) : AddedPreferences{};
}

void AddedPreferencesStore::setWasReadObserver(std::function<void(const AddedPreferences&)> observer)
{
    m_document.setObserver({[this, observer = std::move(observer)](
                                const std::optional<std::string>& document) { observer(decode(document)); },
                            {}});
}

Expected<void, DocumentError> AddedPreferencesStore::save(const AddedPreferences& preferences)
{
    auto document = encode(preferences);
    if (!document) {
        return Unexpected{document.error()};
    }
    m_document.write(*std::move(document));
    return {};
}

AddedPreferences AddedPreferencesStore::decode(const std::optional<std::string>& document)
{
    if (!document) {
        return {};
    }
    const auto preferences = decodeAddedPreferences(*document);
    if (!preferences) {
        m_document.setDamaged();
        return {};
    }
    return *preferences;
}

} // namespace brevlin
