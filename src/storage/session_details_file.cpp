#include "storage/session_details_file.h"

#include "storage/session_details_document.h"
#include "storage/set_aside.h"

#include <utility>

namespace brevlin {

std::string defaultSessionDetailsPath(const std::string& dataFolder)
{
    return dataFolder + "/Brevlin/session-details-v1.json";
}

SessionDetailsFile::SessionDetailsFile(std::string path, DurableFile& files, const Clock& clock)
    : m_path(std::move(path)), m_files(files), m_clock(clock)
{}

Expected<SessionDetailsById, DocumentError> SessionDetailsFile::load()
{
    const auto bytes = m_files.read(m_path);
    if (!bytes) {
        return Unexpected{documentError(bytes.error())};
    }
    Expected<SessionDetailsById, DocumentError> result{SessionDetailsById{}};
    if (*bytes) {
        result = decodeSessionDetails(**bytes);
        if (!result && !result.error().isAboutContent) {
            return result;
        }
        m_isDamaged = !result;
    }
    m_isLoaded = true;
    m_details = result ? *result : SessionDetailsById{};
    return result;
}

Expected<void, DocumentError> SessionDetailsFile::apply(const SessionDetailsById& changes)
{
    for (const auto& [id, details] : changes) {
        m_waiting[id] = details;
    }
    return flush();
}

Expected<void, DocumentError> SessionDetailsFile::clear()
{
    m_details.clear();
    m_waiting.clear();
    m_isLoaded = true;
    m_isSaved = false;
    return flush();
}

Expected<void, DocumentError> SessionDetailsFile::flush()
{
    if (!m_isLoaded) {
        if (const auto loaded = load(); !loaded && !m_isLoaded) {
            return Unexpected{loaded.error()};
        }
    }
    for (auto& [id, details] : std::exchange(m_waiting, {})) {
        if (details.isEmpty()) {
            m_details.erase(id);
        } else {
            m_details[id] = std::move(details);
        }
        m_isSaved = false;
    }
    if (m_isSaved) {
        return {};
    }
    if (m_isDamaged) {
        if (const auto kept = setAsideFile(m_files, m_path, m_clock.now()); !kept) {
            return Unexpected{documentError(kept.error())};
        }
        m_isDamaged = false;
    }
    if (m_details.empty()) {
        if (const auto removed = m_files.remove(m_path); !removed) {
            return Unexpected{documentError(removed.error())};
        }
    } else {
        const auto text = encodeSessionDetails(m_details);
        if (!text) {
            return Unexpected{text.error()};
        }
        if (const auto written = m_files.write(m_path, *text); !written) {
            return Unexpected{documentError(written.error())};
        }
    }
    m_isSaved = true;
    return {};
}

} // namespace brevlin
