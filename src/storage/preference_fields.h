#pragma once

#include "storage/app_preferences.h"
#include "storage/stored_field.h"

#include <tuple>

namespace brevlin {

/// Every field of the timer's settings, in the order of the document.
inline constexpr std::tuple timerSettingsFields{
    StoredField{"focusDuration", &TimerSettings::focusDuration},
    StoredField{"shortBreakDuration", &TimerSettings::shortBreakDuration},
    StoredField{"longBreakDuration", &TimerSettings::longBreakDuration},
    StoredField{"focusSessionsPerLongBreak", &TimerSettings::focusSessionsPerLongBreak},
    StoredField{"autoStartBreaks", &TimerSettings::autoStartBreaks},
    StoredField{"autoStartFocus", &TimerSettings::autoStartFocus},
    StoredField{"alertIntensity", &TimerSettings::alertIntensity},
};

/// Every field of the preferences but the timer's settings, in the order of the document.
inline constexpr std::tuple preferenceFields{
    StoredField{"showTopCapsuleWhileRunning", &AppPreferences::showTopCapsuleWhileRunning},
    StoredField{"playCompletionSound", &AppPreferences::playCompletionSound},
    StoredField{"topTimerAppearance", &AppPreferences::topTimerAppearance},
    StoredField{"appLanguage", &AppPreferences::appLanguage},
};

} // namespace brevlin
