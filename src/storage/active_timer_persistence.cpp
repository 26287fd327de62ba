#include "storage/active_timer_persistence.h"

#include "storage/snapshot_document.h"

#include <utility>

namespace brevlin {

ActiveTimerPersistence::ActiveTimerPersistence(const DocumentDisk& disk, const std::string& key)
    : m_document(disk, key, key == defaultKey ? std::optional{std::string(legacyDefaultKey)} : std::nullopt)
{}

void ActiveTimerPersistence::setObserver(Observer observer)
{
    m_document.setObserver({[this, wasRead = std::move(observer.wasRead)](
                                const std::optional<std::string>& document) { wasRead(decode(document)); },
                            std::move(observer.notSaved)});
}

ActiveTimerPersistence::Loaded ActiveTimerPersistence::load()
{
    const auto document = m_document.read();
    return document ? decode(*document) : Loaded{Unexpected{document.error()}};
}

ActiveTimerPersistence::Loaded ActiveTimerPersistence::decode(const std::optional<std::string>& document)
{
    if (!document) {
        return std::optional<TimerSnapshot>{};
    }
    const auto snapshot = decodeTimerSnapshot(*document);
    if (!snapshot) {
        m_document.setDamaged();
        return Unexpected{snapshot.error()};
    }
    if (m_document.isUnderLegacyKey()) {
        [[maybe_unused]] const auto moved = save(*snapshot);
    }
    return std::optional{*snapshot};
}

Expected<void, DocumentError> ActiveTimerPersistence::save(const TimerSnapshot& snapshot)
{
    auto document = encode(snapshot);
    if (!document) {
        return Unexpected{document.error()};
    }
    m_document.write(*std::move(document));
    return {};
}

} // namespace brevlin
