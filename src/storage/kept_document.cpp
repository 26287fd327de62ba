#include "storage/kept_document.h"

#include "storage/set_aside.h"

#include <utility>

namespace brevlin {

KeptDocument::KeptDocument(const DocumentDisk& disk, std::string key, std::optional<std::string> legacyKey)
    : m_thread(disk.thread)
    , m_file(new File{disk.defaults, disk.clock, std::move(key), std::move(legacyKey), {}})
    , m_self(std::make_shared<KeptDocument*>(this))
    , m_retryTimer(disk.scheduler, [this] { retry(); })
    , m_readKey(m_file->key)
{}

Expected<std::optional<std::string>, DocumentError> KeptDocument::read()
{
    if (m_isWanted) {
        return m_wanted;
    }
    const auto content = readFrom(*m_file);
    if (!content) {
        m_isUnread = true;
        m_retryTimer.failed();
        return Unexpected{content.error()};
    }
    take(*content);
    return content->bytes;
}

void KeptDocument::readLater()
{
    m_isUnread = true;
    retry();
}

Expected<KeptDocument::Content, DocumentError> KeptDocument::readFrom(const File& file)
{
    auto bytes = file.defaults.value(file.key);
    if (!bytes) {
        return Unexpected{documentError(bytes.error())};
    }
    if (*bytes || !file.legacyKey) {
        return Content{file.key, *std::move(bytes)};
    }
    bytes = file.defaults.value(*file.legacyKey);
    if (!bytes) {
        return Unexpected{documentError(bytes.error())};
    }
    return Content{*bytes ? *file.legacyKey : file.key, *std::move(bytes)};
}

void KeptDocument::take(const Content& content)
{
    m_isUnread = false;
    m_readKey = content.key;
    m_file->movesLegacy = content.key != m_file->key;
}

void KeptDocument::want(std::optional<std::string> bytes)
{
    m_wanted = std::move(bytes);
    m_isWanted = true;
    ++m_file->newestVersion;
    if (m_isUnread) {
        retry();
    } else {
        postWrite();
    }
}

void KeptDocument::retry()
{
    if (m_jobs > 0) {
        return;
    }
    if (m_isUnread) {
        postRead();
    } else if (m_isWanted) {
        postWrite();
    }
}

void KeptDocument::postWrite()
{
    ++m_jobs;
    m_thread.post([file = m_file, self = std::weak_ptr(m_self), bytes = m_wanted,
                   version = m_file->newestVersion.load()]() -> DocumentThread::Completion {
        // Behind this one waits a job with a newer state, in the right place among all the others.
        const bool isOutdated = file->newestVersion != version;
        auto saved = isOutdated ? Expected<void, DocumentError>{} : file->save(bytes);
        return [self, version, saved = std::move(saved)] {
            if (const auto document = self.lock()) {
                (*document)->finishWrite(version, saved);
            }
        };
    });
}

void KeptDocument::finishWrite(std::uint64_t version, const Expected<void, DocumentError>& saved)
{
    --m_jobs;
    if (version != m_file->newestVersion) {
        return;
    }
    if (saved) {
        m_isWanted = false;
        m_retryTimer.succeeded();
        if (m_observer.saved) {
            m_observer.saved();
        }
        return;
    }
    m_retryTimer.failed();
    if (std::exchange(m_toldVersion, version) != version && m_observer.notSaved) {
        m_observer.notSaved(saved.error());
    }
}

void KeptDocument::postRead()
{
    ++m_jobs;
    m_thread.post([file = m_file, self = std::weak_ptr(m_self)]() -> DocumentThread::Completion {
        return [self, content = readFrom(*file)] {
            if (const auto document = self.lock()) {
                (*document)->finishRead(content);
            }
        };
    });
}

void KeptDocument::finishRead(const Expected<Content, DocumentError>& content)
{
    --m_jobs;
    if (!content) {
        m_retryTimer.failed();
        return;
    }
    m_retryTimer.succeeded();
    take(*content);
    if (m_observer.wasRead) {
        m_observer.wasRead(content->bytes);
    }
    // What waited, unless the observer has written something newer by now.
    retry();
}

Expected<void, DocumentError> KeptDocument::File::save(const std::optional<std::string>& bytes)
{
    if (!bytes) {
        // The legacy one first: left alone by a crash, it would come back as the current one.
        if (legacyKey) {
            if (auto removed = removeOrKeep(*legacyKey); !removed) {
                return removed;
            }
        }
        return removeOrKeep(key);
    }
    if (damagedKey == key) {
        if (auto kept = removeOrKeep(key); !kept) {
            return kept;
        }
    }
    if (const auto written = defaults.setValue(key, *bytes); !written) {
        return Unexpected{documentError(written.error())};
    }
    // One that could not be removed is no longer looked at.
    if (std::exchange(movesLegacy, false) && damagedKey != legacyKey) {
        [[maybe_unused]] const auto removed = defaults.remove(*legacyKey);
    }
    return {};
}

Expected<void, DocumentError> KeptDocument::File::removeOrKeep(const std::string& from)
{
    const bool isDamaged = damagedKey == from;
    const auto gone = isDamaged ? setAsideValue(defaults, from, clock.now()) : defaults.remove(from);
    if (!gone) {
        return Unexpected{documentError(gone.error())};
    }
    if (isDamaged) {
        damagedKey.reset();
    }
    return {};
}

} // namespace brevlin
