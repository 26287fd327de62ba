#pragma once

#include "core/expected.h"
#include "storage/app_preferences.h"
#include "storage/kept_document.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// Keeps the preferences in the user defaults.
class PreferencesStore final
{
public:
    static constexpr std::string_view key = "Brevlin.preferences.v1";
    /// Where the first release kept them, under its former name.
    static constexpr std::string_view legacyKey = "Kestrove.preferences.v1";

    explicit PreferencesStore(const DocumentDisk& disk);

    /// The stored preferences, or the defaults where there are none or none that can be read. Moves a
    /// document under the legacy key to the current one.
    AppPreferences load();
    /// Why load() could not read what is stored, if so. It is then read again, and what is saved meanwhile
    /// waits.
    const std::optional<DocumentError>& readError() const { return m_readError; }
    /// Told once of the stored preferences when they could be read after all. Changes that were made since
    /// load() are the observer's to keep.
    void setWasReadObserver(std::function<void(const AppPreferences&)> observer);
    /// An error means that the preferences cannot be expressed. Otherwise they are written as soon as the
    /// disk takes them.
    Expected<void, DocumentError> save(const AppPreferences& preferences);
    void retry() { m_document.retry(); }
    bool isSaved() const { return m_document.isSaved(); }

private:
    AppPreferences decode(const std::optional<std::string>& document);

    KeptDocument m_document;
    std::optional<DocumentError> m_readError;
};

} // namespace brevlin
