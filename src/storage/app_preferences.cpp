#include "storage/app_preferences.h"

#include "storage/json/json_reader.h"
#include "storage/json/json_writer.h"
#include "storage/preference_fields.h"
#include "storage/stored_limits.h"

#include <cstddef>
#include <utility>

namespace brevlin {

namespace {

template <typename Fields, typename Object>
void writeFields(JsonWriter& writer, const Fields& fields, const Object& object)
{
    forEachField(fields, [&](const auto& field) { writer.field(field.name, field.of(object)); });
}

template <typename Fields, typename Object>
void join(const Fields& fields, const Object& start, const Object& current, Object& result)
{
    forEachField(fields, [&](const auto& field) {
        if (field.of(start) != field.of(current)) {
            field.of(result) = field.of(current);
        }
    });
}

Expected<TimerSettings, DocumentError> readTimerSettings(JsonValue value)
{
    TimerSettings settings;
    JsonObjectReader reader(value);
    forEachField(timerSettingsFields,
                 [&](const auto& field) { reader.required(field.name, field.of(settings)); });
    settings.focusDuration = withinLimits(settings.focusDuration);
    settings.shortBreakDuration = withinLimits(settings.shortBreakDuration);
    settings.longBreakDuration = withinLimits(settings.longBreakDuration);
    return reader.finish(settings.sanitized());
}

} // namespace

std::string_view title(TopTimerAppearance appearance, AppLanguage language)
{
    static constexpr std::array<BilingualText, 3> texts{{
        {"模糊透明", "System Blur"},
        {"白色", "Light"},
        {"深色", "Dark"},
    }};
    return texts.at(static_cast<std::size_t>(appearance)).in(language);
}

AppPreferences joined(const AppPreferences& stored, const AppPreferences& start,
                      const AppPreferences& current)
{
    AppPreferences result = stored;
    join(timerSettingsFields, start.timerSettings, current.timerSettings, result.timerSettings);
    join(preferenceFields, start, current, result);
    return result;
}

Expected<std::string, DocumentError> encode(const AppPreferences& preferences)
{
    JsonWriter writer;
    writer.beginObject();
    writer.key("timerSettings");
    writer.beginObject();
    writeFields(writer, timerSettingsFields, preferences.timerSettings);
    writer.endObject();
    writeFields(writer, preferenceFields, preferences);
    writer.endObject();
    return std::move(writer).finish();
}

Expected<AppPreferences, DocumentError> decodeAppPreferences(const std::string& document)
{
    const auto json = JsonDocument::parse(document);
    if (!json) {
        return Unexpected{json.error()};
    }
    AppPreferences preferences;
    JsonObjectReader reader(json->root());
    if (const auto value = reader.find("timerSettings"); value && !value->is_null()) {
        if (const auto settings = readTimerSettings(*value)) {
            preferences.timerSettings = *settings;
        } else {
            reader.refuse(settings.error());
        }
    }
    forEachField(preferenceFields,
                 [&](const auto& field) { reader.optional(field.name, field.of(preferences)); });
    return reader.finish(preferences);
}

} // namespace brevlin
