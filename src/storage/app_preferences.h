#pragma once

#include "core/expected.h"
#include "core/language.h"
#include "core/raw_value.h"
#include "core/timer_settings.h"
#include "storage/document_error.h"

#include <array>
#include <string>
#include <string_view>

namespace brevlin {

/// The surface of the floating capsule in all its shapes.
enum class TopTimerAppearance { systemBlur, light, dark };

template <>
struct RawValues<TopTimerAppearance>
{
    static constexpr std::array cases{
        RawValueCase<TopTimerAppearance>{TopTimerAppearance::systemBlur, "systemBlur"},
        RawValueCase<TopTimerAppearance>{TopTimerAppearance::light, "light"},
        RawValueCase<TopTimerAppearance>{TopTimerAppearance::dark, "dark"},
    };
};

std::string_view title(TopTimerAppearance appearance, AppLanguage language);

/// The user's choices that outlive a run of the program. The defaults depend on nothing: a first start is in
/// Simplified Chinese with the dark capsule on every desktop.
struct AppPreferences
{
    TimerSettings timerSettings;
    bool showTopCapsuleWhileRunning = true;
    bool playCompletionSound = true;
    TopTimerAppearance topTimerAppearance = TopTimerAppearance::dark;
    AppLanguage appLanguage = AppLanguage::simplifiedChinese;

    bool operator==(const AppPreferences&) const = default;
};

/// The stored choices with those on top that were made since: where the current value differs from the one
/// it started from.
AppPreferences joined(const AppPreferences& stored, const AppPreferences& start,
                      const AppPreferences& current);

Expected<std::string, DocumentError> encode(const AppPreferences& preferences);
/// A key may be missing or null, then its default applies; any invalid value makes the document unreadable.
/// The timer settings are sanitized.
Expected<AppPreferences, DocumentError> decodeAppPreferences(const std::string& document);

} // namespace brevlin
