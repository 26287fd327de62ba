#include "storage/preferences_store.h"

#include "storage/set_aside.h"

#include <string>

namespace brevlin {

PreferencesStore::PreferencesStore(UserDefaults& defaults, const Clock& clock)
    : m_defaults(defaults), m_clock(clock)
{}

AppPreferences PreferencesStore::load()
{
    const auto document = m_defaults.value(std::string(key));
    if (document && !*document) {
        m_isUnreadable = false;
        return loadLegacy();
    }
    if (document) {
        if (const auto preferences = decodeAppPreferences(**document)) {
            m_isUnreadable = false;
            return *preferences;
        }
    }
    m_isUnreadable = true;
    return {};
}

AppPreferences PreferencesStore::loadLegacy()
{
    const auto document = m_defaults.value(std::string(legacyKey));
    if (!document || !*document) {
        return {};
    }
    const auto preferences = decodeAppPreferences(**document);
    if (!preferences) {
        return {};
    }
    // A document that could not be moved is read again at the next start. One that could not be removed is no
    // longer looked at.
    if (save(*preferences)) {
        (void)m_defaults.remove(std::string(legacyKey));
    }
    return *preferences;
}

Expected<void, DocumentError> PreferencesStore::save(const AppPreferences& preferences)
{
    const auto document = encode(preferences);
    if (!document) {
        return Unexpected{document.error()};
    }
    if (m_isUnreadable) {
        if (const auto kept = setAsideValue(m_defaults, std::string(key), m_clock.now()); !kept) {
            return Unexpected{documentError(kept.error())};
        }
        m_isUnreadable = false;
    }
    if (const auto written = m_defaults.setValue(std::string(key), *document); !written) {
        return Unexpected{documentError(written.error())};
    }
    return {};
}

} // namespace brevlin
