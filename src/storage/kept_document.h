#pragma once

#include "core/expected.h"
#include "platform/clock.h"
#include "platform/document_thread.h"
#include "platform/user_defaults.h"
#include "storage/document_error.h"
#include "storage/retry_timer.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace brevlin {

/// What a document needs in order to be kept. Everything outlives the documents; the clock names what is set
/// aside.
struct DocumentDisk
{
    UserDefaults& defaults;
    DocumentThread& thread;
    TaskScheduler& scheduler;
    const Clock& clock;
};

/// One small document of the user defaults. It is read at the start and afterwards only written: beside the
/// main thread, the newest state in place of older ones that still wait, and again and again while the disk
/// refuses. Nothing is written over a content that could not be read, and one that does not decode is set
/// aside first.
class KeptDocument final
{
public:
    struct Observer
    {
        /// What could not be read at the start has been read now; nothing where there is no document.
        std::function<void(const std::optional<std::string>&)> wasRead;
        /// The first attempt to write the newest state failed. There will be more.
        std::function<void(const DocumentError&)> notSaved;
        /// The newest state is on the disk.
        std::function<void()> saved = nullptr;
    };

    /// A document under the legacy key is read where the key has none, and removed once its content stands
    /// under the key.
    KeptDocument(const DocumentDisk& disk, std::string key, std::optional<std::string> legacyKey = {});
    KeptDocument(const KeptDocument&) = delete;
    KeptDocument& operator=(const KeptDocument&) = delete;

    void setObserver(Observer observer) { m_observer = std::move(observer); }
    /// For the start. After a failure reading is tried again, and the observer is told.
    Expected<std::optional<std::string>, DocumentError> read();
    /// Reads beside the main thread; the observer is told. What is written meanwhile waits for that.
    void readLater();
    /// Whether what was read last stood under the legacy key. Writing it moves it.
    bool isUnderLegacyKey() const { return m_readKey != m_file->key; }
    /// What was read last does not decode.
    void setDamaged() { m_file->damagedKey = m_readKey; }
    void write(std::string bytes) { want(std::move(bytes)); }
    void remove() { want(std::nullopt); }
    /// Tries now what is still to be done, if anything.
    void retry();
    /// Whether the newest state is on the disk.
    bool isSaved() const { return !m_isWanted; }

private:
    // What the jobs work with. They run one after the other, so only the version is seen by two threads at
    // once.
    struct File
    {
        UserDefaults& defaults;
        const Clock& clock;
        std::string key;
        std::optional<std::string> legacyKey;
        std::optional<std::string> damagedKey;
        bool movesLegacy = false;
        std::atomic<std::uint64_t> newestVersion{0};

        Expected<void, DocumentError> save(const std::optional<std::string>& bytes);
        Expected<void, DocumentError> removeOrKeep(const std::string& from);
    };
    struct Content
    {
        std::string key;
        std::optional<std::string> bytes;
    };

    static Expected<Content, DocumentError> readFrom(const File& file);
    void take(const Content& content);
    void want(std::optional<std::string> bytes);
    void postWrite();
    void postRead();
    void finishWrite(std::uint64_t version, const Expected<void, DocumentError>& saved);
    void finishRead(const Expected<Content, DocumentError>& content);

    DocumentThread& m_thread;
    std::shared_ptr<File> m_file;
    std::shared_ptr<KeptDocument*> m_self; // seen by completions as long as this lives
    Observer m_observer;
    RetryTimer m_retryTimer;
    std::string m_readKey;
    std::optional<std::string> m_wanted; // none: no document
    bool m_isWanted = false;
    bool m_isUnread = false;
    std::uint64_t m_toldVersion = 0;
    int m_jobs = 0;
};

} // namespace brevlin
