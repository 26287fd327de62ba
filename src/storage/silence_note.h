#pragma once

#include "core/expected.h"
#include "storage/document_error.h"
#include "storage/kept_document.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// What the program has made of a switch of the desktop's that stays so without it, and what it was before.
struct SilenceNote
{
    std::string switchName;
    bool wasSilent = false;
    bool isSilent = true;

    bool operator==(const SilenceNote&) const = default;
};

Expected<std::string, DocumentError> encode(const SilenceNote& note);
/// All keys are required.
Expected<SilenceNote, DocumentError> decodeSilenceNote(const std::string& document);

/// Keeps the note in the user defaults from before the switch is turned until it has been given back, so that
/// a later run gives back what this one could not.
class SilenceNoteStore final
{
public:
    static constexpr std::string_view key = "Brevlin.silencedNotifications.v1";

    struct Observer
    {
        /// What an earlier run has left; nothing where there is none that can be understood.
        std::function<void(const std::optional<SilenceNote>&)> wasRead;
        /// What was written or removed last is so on the disk.
        std::function<void()> saved;
    };

    explicit SilenceNoteStore(const DocumentDisk& disk) : m_document(disk, std::string(key)) {}

    void setObserver(Observer observer);
    /// Beside the main thread; again and again while the disk refuses.
    void read() { m_document.readLater(); }
    /// An error means that the note cannot be expressed.
    Expected<void, DocumentError> write(const SilenceNote& note);
    void remove() { m_document.remove(); }
    bool isSaved() const { return m_document.isSaved(); }

private:
    KeptDocument m_document;
};

} // namespace brevlin
