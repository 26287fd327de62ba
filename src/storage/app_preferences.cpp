#include "storage/app_preferences.h"

#include "storage/json/json_reader.h"
#include "storage/json/json_writer.h"
#include "storage/stored_limits.h"

#include <cstddef>
#include <utility>

namespace brevlin {

namespace {

void write(JsonWriter& writer, const TimerSettings& settings)
{
    writer.beginObject();
    writer.field("focusDuration", settings.focusDuration);
    writer.field("shortBreakDuration", settings.shortBreakDuration);
    writer.field("longBreakDuration", settings.longBreakDuration);
    writer.field("focusSessionsPerLongBreak", settings.focusSessionsPerLongBreak);
    writer.field("autoStartBreaks", settings.autoStartBreaks);
    writer.field("autoStartFocus", settings.autoStartFocus);
    writer.field("alertIntensity", settings.alertIntensity);
    writer.endObject();
}

Expected<TimerSettings, DocumentError> readTimerSettings(JsonValue value)
{
    TimerSettings settings;
    JsonObjectReader reader(value);
    reader.required("focusDuration", settings.focusDuration);
    reader.required("shortBreakDuration", settings.shortBreakDuration);
    reader.required("longBreakDuration", settings.longBreakDuration);
    reader.required("focusSessionsPerLongBreak", settings.focusSessionsPerLongBreak);
    reader.required("autoStartBreaks", settings.autoStartBreaks);
    reader.required("autoStartFocus", settings.autoStartFocus);
    reader.required("alertIntensity", settings.alertIntensity);
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
    const auto choose = [](const auto& was, const auto& is, auto& chosen) {
        if (was != is) {
            chosen = is;
        }
    };
    AppPreferences result = stored;
    const TimerSettings& was = start.timerSettings;
    const TimerSettings& is = current.timerSettings;
    TimerSettings& chosen = result.timerSettings;
    choose(was.focusDuration, is.focusDuration, chosen.focusDuration);
    choose(was.shortBreakDuration, is.shortBreakDuration, chosen.shortBreakDuration);
    choose(was.longBreakDuration, is.longBreakDuration, chosen.longBreakDuration);
    choose(was.focusSessionsPerLongBreak, is.focusSessionsPerLongBreak, chosen.focusSessionsPerLongBreak);
    choose(was.autoStartBreaks, is.autoStartBreaks, chosen.autoStartBreaks);
    choose(was.autoStartFocus, is.autoStartFocus, chosen.autoStartFocus);
    choose(was.alertIntensity, is.alertIntensity, chosen.alertIntensity);
    choose(start.showTopCapsuleWhileRunning, current.showTopCapsuleWhileRunning,
           result.showTopCapsuleWhileRunning);
    choose(start.playCompletionSound, current.playCompletionSound, result.playCompletionSound);
    choose(start.topTimerAppearance, current.topTimerAppearance, result.topTimerAppearance);
    choose(start.appLanguage, current.appLanguage, result.appLanguage);
    return result;
}

Expected<std::string, DocumentError> encode(const AppPreferences& preferences)
{
    JsonWriter writer;
    writer.beginObject();
    writer.key("timerSettings");
    write(writer, preferences.timerSettings);
    writer.field("showTopCapsuleWhileRunning", preferences.showTopCapsuleWhileRunning);
    writer.field("playCompletionSound", preferences.playCompletionSound);
    writer.field("topTimerAppearance", preferences.topTimerAppearance);
    writer.field("appLanguage", preferences.appLanguage);
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
    reader.optional("showTopCapsuleWhileRunning", preferences.showTopCapsuleWhileRunning);
    reader.optional("playCompletionSound", preferences.playCompletionSound);
    reader.optional("topTimerAppearance", preferences.topTimerAppearance);
    reader.optional("appLanguage", preferences.appLanguage);
    return reader.finish(preferences);
}

} // namespace brevlin
