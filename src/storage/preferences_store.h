#pragma once

#include "core/expected.h"
#include "platform/clock.h"
#include "platform/user_defaults.h"
#include "storage/app_preferences.h"
#include "storage/document_error.h"

#include <string_view>

namespace brevlin {

/// Keeps the preferences in the user defaults. Preferences that could not be read are set aside before the
/// first save replaces them.
class PreferencesStore final
{
public:
    static constexpr std::string_view key = "Brevlin.preferences.v1";
    /// Where the first release kept them, under its former name.
    static constexpr std::string_view legacyKey = "Kestrove.preferences.v1";

    /// The clock names what is set aside.
    PreferencesStore(UserDefaults& defaults, const Clock& clock);

    /// The stored preferences, or the defaults where there are none or none that can be read. Moves a
    /// document under the legacy key to the current one.
    AppPreferences load();
    /// After a failure the old document still stands.
    Expected<void, DocumentError> save(const AppPreferences& preferences);

private:
    AppPreferences loadLegacy();

    UserDefaults& m_defaults;
    const Clock& m_clock;
    bool m_isUnreadable = false;
};

} // namespace brevlin
