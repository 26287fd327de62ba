#include "storage/history_file.h"

#include "storage/set_aside.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <utility>

namespace brevlin {

namespace {

constexpr const char* fileName = "sessions-v1.json";

std::optional<Instant> latestEndOf(const std::vector<SessionRecord>& records)
{
    return records.empty() ? std::nullopt : std::optional{records.front().endedAt};
}

} // namespace

HistoryLocation defaultHistoryLocation(const std::string& dataFolder)
{
    return {dataFolder + "/Brevlin/" + fileName, dataFolder + "/Kestrove/" + fileName};
}

HistoryFile::HistoryFile(HistoryLocation location, DurableFile& files, const Clock& clock)
    : m_location(std::move(location)), m_files(files), m_clock(clock)
{}

// The file, or the one of the first release, which is copied; nothing where there is neither.
Expected<std::optional<HistoryFile::Found>, DocumentError> HistoryFile::find()
{
    auto content = m_files.readStamped(m_location.path);
    if (content && *content) {
        return std::optional{Found{std::move((*content)->bytes), (*content)->stamp}};
    }
    if (content && m_location.legacyPath) {
        content = m_files.readStamped(*m_location.legacyPath);
        if (content && *content) {
            // One that cannot be copied is read where it is; the first change writes it.
            const auto copied = m_files.write(m_location.path, (*content)->bytes);
            return std::optional{
                Found{std::move((*content)->bytes), copied ? std::optional{*copied} : std::nullopt}};
        }
    }
    return content
               ? std::optional<Found>{}
               : Expected<std::optional<Found>, DocumentError>{Unexpected{documentError(content.error())}};
}

HistoryFile::Records HistoryFile::load()
{
    auto found = find();
    if (!found) {
        return Unexpected{found.error()};
    }
    Content content;
    Records result{std::vector<SessionRecord>{}};
    if (*found) {
        content.stamp = (*found)->stamp;
        result = decodeSessionArchive((*found)->bytes);
        if (!result && (m_isLoaded || !result.error().isAboutContent)) {
            return result;
        }
        content.isDamaged = !result && content.stamp;
        if (result) {
            content.text.adopt(std::move((*found)->bytes));
            content.latestEnd = latestEndOf(*result);
        }
    }
    m_content = std::move(content);
    m_isLoaded = true;
    if (result) {
        know(*result);
    }
    return result;
}

HistoryOutcome HistoryFile::apply(const HistoryChange& change)
{
    if (const auto* record = std::get_if<SessionRecord>(&change)) {
        SessionArchiveText trial;
        if (const auto expressed = trial.encode({*record}); !expressed) {
            return {HistoryOutcome::Result::refused, expressed.error(), {}};
        }
        m_waiting.push_back(change);
        return flush(Patience::waits);
    }
    // A removal that cannot be written now is taken back rather than tried again: what the user is told
    // would not hold any longer.
    Content before = m_content;
    m_waiting.push_back(change);
    HistoryOutcome outcome = flush(Patience::waits);
    if (outcome.result != HistoryOutcome::Result::saved) {
        m_content = std::move(before);
        if (!m_waiting.empty()) {
            m_waiting.pop_back();
        }
        outcome.result = HistoryOutcome::Result::refused;
        outcome.takenOver.clear();
        if (!outcome.error) {
            outcome.error = DocumentError{"The file has not been read yet", false};
        }
    }
    return outcome;
}

HistoryOutcome HistoryFile::flush(Patience patience)
{
    HistoryOutcome outcome;
    const auto wait = [&outcome](const DocumentError& error) {
        outcome.result = HistoryOutcome::Result::waits;
        outcome.error = error;
        return std::move(outcome);
    };
    if (!m_isLoaded) {
        outcome.result = HistoryOutcome::Result::waits;
        return outcome;
    }
    while (!m_waiting.empty()) {
        if (const auto brought = bring(m_waiting.front()); !brought) {
            return wait(brought.error());
        }
        m_waiting.erase(m_waiting.begin());
    }
    if (m_content.isSaved) {
        return outcome;
    }
    for (;;) {
        auto taken = takeOver(patience);
        if (!taken) {
            return wait(taken.error());
        }
        std::move(taken->begin(), taken->end(), std::back_inserter(outcome.takenOver));
        const auto written = write();
        if (!written) {
            return wait(written.error());
        }
        if (*written) {
            return outcome;
        }
    }
}

HistoryFile::Records HistoryFile::records() const
{
    return decodeSessionArchive(std::string(m_content.text.view()));
}

void HistoryFile::know(const std::vector<SessionRecord>& records)
{
    const auto old = static_cast<std::ptrdiff_t>(m_content.knownIds.size());
    for (const SessionRecord& record : records) {
        m_content.knownIds.push_back(record.id);
    }
    const auto begin = m_content.knownIds.begin();
    std::sort(begin + old, m_content.knownIds.end());
    std::inplace_merge(begin, begin + old, m_content.knownIds.end());
}

Expected<void, DocumentError> HistoryFile::encode(const std::vector<SessionRecord>& records)
{
    if (auto encoded = m_content.text.encode(records); !encoded) {
        return encoded;
    }
    m_content.latestEnd = latestEndOf(records);
    m_content.isSaved = false;
    return {};
}

Expected<void, DocumentError> HistoryFile::insert(const SessionRecord& record)
{
    const bool isKnown = std::binary_search(m_content.knownIds.begin(), m_content.knownIds.end(), record.id);
    if (!isKnown && (!m_content.latestEnd || record.endedAt > *m_content.latestEnd)) {
        const auto prepended = m_content.text.prepend(record);
        if (!prepended) {
            return Unexpected{prepended.error()};
        }
        if (*prepended) {
            know({record});
            m_content.latestEnd = record.endedAt;
            m_content.isSaved = false;
            return {};
        }
    }
    auto all = records();
    if (!all) {
        return Unexpected{all.error()};
    }
    std::erase_if(*all, [&](const SessionRecord& other) { return other.id == record.id; });
    all->insert(std::upper_bound(all->begin(), all->end(), record, endedLater), record);
    if (auto encoded = encode(*all); !encoded) {
        return encoded;
    }
    if (!isKnown) {
        know({record});
    }
    return {};
}

Expected<void, DocumentError> HistoryFile::remove(Uuid id)
{
    auto all = records();
    if (!all) {
        return Unexpected{all.error()};
    }
    std::erase_if(*all, [&](const SessionRecord& other) { return other.id == id; });
    return encode(*all);
}

Expected<void, DocumentError> HistoryFile::bring(const HistoryChange& change)
{
    if (const auto* record = std::get_if<SessionRecord>(&change)) {
        return insert(*record);
    }
    if (const auto* removal = std::get_if<RemoveRecord>(&change)) {
        return remove(removal->id);
    }
    return encode({});
}

// Gives the records that were not here before.
HistoryFile::Records HistoryFile::takeOver(Patience patience)
{
    const auto stamp = m_files.stamp(m_location.path);
    if (!stamp) {
        return Unexpected{documentError(stamp.error())};
    }
    if (*stamp == m_content.stamp) {
        return std::vector<SessionRecord>{};
    }
    const auto file = m_files.readStamped(m_location.path);
    if (!file) {
        return Unexpected{documentError(file.error())};
    }
    if (!*file) {
        m_content.stamp.reset();
        m_content.isDamaged = false;
        return std::vector<SessionRecord>{};
    }
    auto found = decodeSessionArchive((*file)->bytes);
    if (!found) {
        const bool isHopeless = m_content.isDamaged || patience == Patience::ended;
        if (!found.error().isAboutContent || !isHopeless) {
            return found;
        }
        m_content.isDamaged = true;
        m_content.stamp = (*file)->stamp;
        return std::vector<SessionRecord>{};
    }
    std::erase_if(*found, [this](const SessionRecord& record) {
        return std::binary_search(m_content.knownIds.begin(), m_content.knownIds.end(), record.id);
    });
    if (!found->empty()) {
        auto all = records();
        if (!all) {
            return all;
        }
        all->insert(all->end(), found->begin(), found->end());
        std::stable_sort(all->begin(), all->end(), endedLater);
        if (const auto encoded = encode(*all); !encoded) {
            return Unexpected{encoded.error()};
        }
        know(*found);
    }
    m_content.isDamaged = false;
    m_content.stamp = (*file)->stamp;
    return found;
}

// Gives false where somebody else has replaced the file meanwhile: it is to be looked at again.
Expected<bool, DocumentError> HistoryFile::write()
{
    if (m_content.isDamaged) {
        if (const auto kept = setAsideFile(m_files, m_location.path, m_clock.now()); !kept) {
            return Unexpected{documentError(kept.error())};
        }
        m_content.isDamaged = false;
        m_content.stamp.reset();
    }
    const auto written = m_files.replace(m_location.path, m_content.text.view(), m_content.stamp);
    if (!written) {
        return written.error().code == ESTALE
                   ? Expected<bool, DocumentError>{false}
                   : Expected<bool, DocumentError>{Unexpected{documentError(written.error())}};
    }
    m_content.stamp = *written;
    m_content.isSaved = true;
    return true;
}

} // namespace brevlin
