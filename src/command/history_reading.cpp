#include "command/history_reading.h"

#include "storage/session_archive.h"
#include "storage/session_archive_scanner.h"

#include <string>
#include <utility>

namespace brevlin {

namespace {

Expected<std::vector<SessionRecord>, DocumentError> decode(const std::string& text)
{
    SessionArchiveScanner scanner(text.size());
    if (scanner.take(text)) {
        if (auto records = scanner.finish()) {
            return *std::move(records);
        }
    }
    return decodeSessionArchive(text);
}

} // namespace

Expected<ReadHistory, DocumentError> readHistory(const HistoryLocation& location, const DurableFile& files)
{
    ReadHistory history;
    auto content = files.readStamped(location.path);
    if (content && *content) {
        history.stamp = (*content)->stamp;
    } else if (content && location.legacyPath) {
        content = files.readStamped(*location.legacyPath);
    }
    if (!content) {
        return Unexpected{documentError(content.error())};
    }
    if (*content) {
        auto records = decode((*content)->bytes);
        if (!records) {
            return Unexpected{records.error()};
        }
        history.records = *std::move(records);
    }
    return history;
}

} // namespace brevlin
