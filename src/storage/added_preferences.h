#pragma once

#include "core/expected.h"
#include "storage/document_error.h"
#include "storage/kept_document.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// Choices that came with later releases. They have a document of their own, so that older releases go on
/// reading the other one and leave this one alone.
struct AddedPreferences
{
    bool asksAboutAbsences = true;
    bool silencesNotifications = false; ///< of the whole desktop, while a focus phase runs
    /// What a later release has added to the document: ",\"key\":value", again and again.
    std::string unknownFields;

    bool operator==(const AddedPreferences&) const = default;
};

Expected<std::string, DocumentError> encode(const AddedPreferences& preferences);
/// A key may be missing or null, then its default applies; any invalid value makes the document unreadable.
/// Keys that are not known here are kept.
Expected<AddedPreferences, DocumentError> decodeAddedPreferences(const std::string& document);

/// Keeps them in the user defaults.
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
};

} // namespace brevlin
