#pragma once

#include "core/expected.h"
#include "core/timer_snapshot.h"
#include "platform/clock.h"
#include "platform/user_defaults.h"
#include "storage/document_error.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace brevlin {

/// Keeps the running timer, so that a phase survives the end of the process. A snapshot that could not be
/// read is set aside before the first save or clear replaces it.
class ActiveTimerPersistence final
{
public:
    static constexpr std::string_view defaultKey = "Brevlin.activeTimerSnapshot.v1";
    /// Where the first release kept it, under its former name; looked at with the default key only.
    static constexpr std::string_view legacyDefaultKey = "Kestrove.activeTimerSnapshot.v1";

    /// The clock names what is set aside.
    ActiveTimerPersistence(UserDefaults& defaults, const Clock& clock,
                           std::string key = std::string(defaultKey));

    /// The stored snapshot; nothing when none is stored. Moves a snapshot under the legacy key to the current
    /// one. A failure leaves what is stored as it is.
    Expected<std::optional<TimerSnapshot>, DocumentError> load();
    /// After a failure the old snapshot still stands.
    Expected<void, DocumentError> save(const TimerSnapshot& snapshot);
    /// Removes the stored snapshot, also the one under the legacy key.
    Expected<void, DocumentError> clear();

private:
    Expected<std::optional<TimerSnapshot>, DocumentError> loadFrom(const std::string& key);
    Expected<void, DocumentError> setAsideIfUnreadable(const std::string& key);
    Expected<void, DocumentError> clear(const std::string& key);

    UserDefaults& m_defaults;
    const Clock& m_clock;
    std::string m_key;
    std::set<std::string> m_unreadableKeys;
};

} // namespace brevlin
