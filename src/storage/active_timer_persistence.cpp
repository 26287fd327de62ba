#include "storage/active_timer_persistence.h"

#include "storage/set_aside.h"
#include "storage/snapshot_document.h"

#include <utility>

namespace brevlin {

ActiveTimerPersistence::ActiveTimerPersistence(UserDefaults& defaults, const Clock& clock, std::string key)
    : m_defaults(defaults), m_clock(clock), m_key(std::move(key))
{}

Expected<std::optional<TimerSnapshot>, DocumentError> ActiveTimerPersistence::load()
{
    auto current = loadFrom(m_key);
    if (!current || *current || m_key != defaultKey) {
        return current;
    }
    auto legacy = loadFrom(std::string(legacyDefaultKey));
    // A snapshot that could not be moved is still a good one: the next start tries again.
    if (legacy && *legacy && save(**legacy)) {
        (void)m_defaults.remove(std::string(legacyDefaultKey));
    }
    return legacy;
}

Expected<void, DocumentError> ActiveTimerPersistence::save(const TimerSnapshot& snapshot)
{
    const auto document = encode(snapshot);
    if (!document) {
        return Unexpected{document.error()};
    }
    if (auto kept = setAsideIfUnreadable(m_key); !kept) {
        return kept;
    }
    if (const auto written = m_defaults.setValue(m_key, *document); !written) {
        return Unexpected{documentError(written.error())};
    }
    return {};
}

Expected<void, DocumentError> ActiveTimerPersistence::clear()
{
    // The legacy one first: left alone by a crash, it would come back as the running timer.
    if (m_key == defaultKey) {
        if (auto cleared = clear(std::string(legacyDefaultKey)); !cleared) {
            return cleared;
        }
    }
    return clear(m_key);
}

Expected<std::optional<TimerSnapshot>, DocumentError> ActiveTimerPersistence::loadFrom(const std::string& key)
{
    m_unreadableKeys.insert(key);
    const auto document = m_defaults.value(key);
    if (!document) {
        return Unexpected{documentError(document.error())};
    }
    std::optional<TimerSnapshot> result;
    if (*document) {
        const auto snapshot = decodeTimerSnapshot(**document);
        if (!snapshot) {
            return Unexpected{snapshot.error()};
        }
        result = *snapshot;
    }
    m_unreadableKeys.erase(key);
    return result;
}

Expected<void, DocumentError> ActiveTimerPersistence::setAsideIfUnreadable(const std::string& key)
{
    if (m_unreadableKeys.contains(key)) {
        if (const auto kept = setAsideValue(m_defaults, key, m_clock.now()); !kept) {
            return Unexpected{documentError(kept.error())};
        }
        m_unreadableKeys.erase(key);
    }
    return {};
}

Expected<void, DocumentError> ActiveTimerPersistence::clear(const std::string& key)
{
    if (auto kept = setAsideIfUnreadable(key); !kept) {
        return kept;
    }
    if (const auto removed = m_defaults.remove(key); !removed) {
        return Unexpected{documentError(removed.error())};
    }
    return {};
}

} // namespace brevlin
