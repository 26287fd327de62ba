#pragma once

#include "core/expected.h"
#include "core/timer_snapshot.h"
#include "storage/kept_document.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// Keeps the running timer, so that a phase survives the end of the process.
class ActiveTimerPersistence final
{
public:
    static constexpr std::string_view defaultKey = "Brevlin.activeTimerSnapshot.v1";
    /// Where the first release kept it, under its former name; looked at with the default key only.
    static constexpr std::string_view legacyDefaultKey = "Kestrove.activeTimerSnapshot.v1";

    using Loaded = Expected<std::optional<TimerSnapshot>, DocumentError>;

    struct Observer
    {
        /// What load() could not read has been read, now or in a later attempt.
        std::function<void(const Loaded&)> wasRead;
        /// The first attempt to write the newest snapshot failed. There will be more.
        std::function<void(const DocumentError&)> notSaved;
    };

    explicit ActiveTimerPersistence(const DocumentDisk& disk,
                                    const std::string& key = std::string(defaultKey));

    void setObserver(Observer observer);
    /// The stored snapshot; nothing when none is stored. Moves a snapshot under the legacy key to the current
    /// one. A failure leaves what is stored as it is; unless the error is about the content, reading is tried
    /// again and what is saved meanwhile waits.
    Loaded load();
    /// An error means that the snapshot cannot be expressed; the one before still stands. Otherwise it is
    /// written as soon as the disk takes it.
    Expected<void, DocumentError> save(const TimerSnapshot& snapshot);
    /// Removes the stored snapshot, also the one under the legacy key.
    void clear() { m_document.remove(); }
    void retry() { m_document.retry(); }
    bool isSaved() const { return m_document.isSaved(); }

private:
    Loaded decode(const std::optional<std::string>& document);

    KeptDocument m_document;
};

} // namespace brevlin
