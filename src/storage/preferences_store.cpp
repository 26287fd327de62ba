#include "storage/preferences_store.h"

#include <utility>

namespace brevlin {

PreferencesStore::PreferencesStore(const DocumentDisk& disk)
    : m_document(disk, std::string(key), std::string(legacyKey))
{}

AppPreferences PreferencesStore::load()
{
    const auto document = m_document.read();
    if (!document) {
        m_readError = document.error();
        return {};
    }
    return decode(*document);
}

AppPreferences PreferencesStore::decode(const std::optional<std::string>& document)
{
    m_readError.reset();
    if (!document) {
        return {};
    }
    const auto preferences = decodeAppPreferences(*document);
    if (!preferences) {
        m_document.setDamaged();
        return {};
    }
    if (m_document.isUnderLegacyKey()) {
        [[maybe_unused]] const auto moved = save(*preferences);
    }
    return *preferences;
}

void PreferencesStore::setWasReadObserver(std::function<void(const AppPreferences&)> observer)
{
    m_document.setObserver({[this, observer = std::move(observer)](
                                const std::optional<std::string>& document) { observer(decode(document)); },
                            {}});
}

Expected<void, DocumentError> PreferencesStore::save(const AppPreferences& preferences)
{
    auto document = encode(preferences);
    if (!document) {
        return Unexpected{document.error()};
    }
    m_document.write(*std::move(document));
    return {};
}

} // namespace brevlin
