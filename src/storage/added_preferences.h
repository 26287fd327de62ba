#pragma once

#include "core/expected.h"
#include "core/key_combination.h"
#include "storage/document_error.h"
#include "storage/kept_document.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brevlin {

/// Choices that came with later releases. They have a document of their own, so that older releases go on
/// reading the other one and leave this one alone.
struct AddedPreferences
{
    bool asksAboutAbsences = true;
    bool silencesNotifications = false; ///< of the whole desktop, while a focus phase runs
    ShortcutKeys shortcutKeys;          ///< those that the program takes hold of by itself
    bool hasBoundShortcutsOnce = false; ///< in the desktop's own dialog, which remembers them

    bool operator==(const AddedPreferences&) const = default;
};

/// What a later release has added: names and JSON values.
using UnknownFields = std::vector<std::pair<std::string, std::string>>;

struct AddedPreferencesDocument
{
    AddedPreferences preferences;
    UnknownFields unknown;
};

Expected<std::string, DocumentError> encode(const AddedPreferencesDocument& document);
/// A key may be missing or null, then its default applies; any invalid value makes the document unreadable.
Expected<AddedPreferencesDocument, DocumentError> decodeAddedPreferences(const std::string& document);

/// Keeps them in the user defaults, and beside them what it does not know.
class AddedPreferencesStore final
{
public:
    static constexpr std::string_view key = "Brevlin.addedPreferences.v1";

    explicit AddedPreferencesStore(const DocumentDisk& disk) : m_document(disk, std::string(key)) {}

    /// The stored ones, or the defaults where there are none or none that can be read.
    AddedPreferences load();
    /// Told once of the stored ones when they could be read only later.
    void setWasReadObserver(std::function<void(const AddedPreferences&)> observer);
    /// An error means that they cannot be expressed. Otherwise they are written as soon as the disk takes
    /// them.
    Expected<void, DocumentError> save(const AddedPreferences& preferences);
    void retry() { m_document.retry(); }
    bool isSaved() const { return m_document.isSaved(); }

private:
    AddedPreferences decode(const std::optional<std::string>& document);

    KeptDocument m_document;
    UnknownFields m_unknown;
};

} // namespace brevlin
