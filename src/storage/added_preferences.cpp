#include "storage/added_preferences.h"

#include "storage/json/json_reader.h"
#include "storage/json/json_writer.h"
#include "storage/stored_field.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace brevlin {

namespace {

constexpr std::tuple fields{
    StoredField{"asksAboutAbsences", &AddedPreferences::asksAboutAbsences},
    StoredField{"silencesNotifications", &AddedPreferences::silencesNotifications},
    StoredField{"hasBoundShortcutsOnce", &AddedPreferences::hasBoundShortcutsOnce},
};

std::string keyName(ShortcutAction action)
{
    return std::string(rawValue(action)) + "Shortcut";
}

void readKey(ShortcutAction action, JsonObjectReader& reader, ShortcutKeys& keys)
{
    std::optional<std::string> text;
    reader.optional(keyName(action), text);
    keys[action] = text ? KeyCombination::fromText(*text) : std::nullopt;
    if (text && !keys[action]) {
        reader.refuse(keyName(action), "is no key");
    }
}

bool isKnown(std::string_view name)
{
    bool isField = false;
    forEachField(fields, [&](const auto& field) { isField = isField || field.name == name; });
    return isField || std::ranges::any_of(allCases<ShortcutAction>(),
                                          [name](ShortcutAction action) { return keyName(action) == name; });
}

UnknownFields unknownFields(JsonValue root)
{
    UnknownFields result;
    simdjson::dom::object object;
    if (root.get(object) == simdjson::SUCCESS) {
        for (const auto& field : object) {
            if (!isKnown(field.key)) {
                result.emplace_back(field.key, simdjson::minify(field.value));
            }
        }
    }
    return result;
}

} // namespace

Expected<std::string, DocumentError> encode(const AddedPreferencesDocument& document)
{
    JsonWriter writer;
    writer.beginObject();
    forEachField(fields,
                 [&](const auto& field) { writer.field(field.name, field.of(document.preferences)); });
    for (const ShortcutAction action : allCases<ShortcutAction>()) {
        if (const auto& key = document.preferences.shortcutKeys[action]) {
            writer.field(keyName(action), std::string_view{key->text()});
        }
    }
    writer.endObject();
    auto text = std::move(writer).finish();
    for (const auto& [name, value] : document.unknown) {
        JsonWriter nameWriter;
        nameWriter.value(std::string_view{name});
        text->insert(text->size() - 1, "," + *std::move(nameWriter).finish() + ":" + value);
    }
    return text;
}

Expected<AddedPreferencesDocument, DocumentError> decodeAddedPreferences(const std::string& document)
{
    const auto json = JsonDocument::parse(document);
    if (!json) {
        return Unexpected{json.error()};
    }
    AddedPreferences preferences;
    JsonObjectReader reader(json->root());
    forEachField(fields, [&](const auto& field) { reader.optional(field.name, field.of(preferences)); });
    for (const ShortcutAction action : allCases<ShortcutAction>()) {
        readKey(action, reader, preferences.shortcutKeys);
    }
    return reader.finish(AddedPreferencesDocument{preferences, unknownFields(json->root())});
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
    auto document = encode(AddedPreferencesDocument{preferences, m_unknown});
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
    const auto decoded = decodeAddedPreferences(*document);
    if (!decoded) {
        m_document.setDamaged();
        return {};
    }
    m_unknown = decoded->unknown;
    return decoded->preferences;
}

} // namespace brevlin
