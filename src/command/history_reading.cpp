#include "command/history_reading.h"

#include "storage/history_file.h"
#include "storage/session_archive.h"
#include "storage/session_archive_scanner.h"
#include "storage/session_details_document.h"
#include "storage/session_details_file.h"

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

Expected<ReadHistory, DocumentError> readHistory(const std::string& dataFolder, const DurableFile& files)
{
    const HistoryLocation location = defaultHistoryLocation(dataFolder);
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
    const auto details = files.read(defaultSessionDetailsPath(dataFolder));
    if (!details) {
        return Unexpected{documentError(details.error())};
    }
    if (*details) {
        auto known = decodeSessionDetails(**details);
        history.details = known ? *std::move(known) : SessionDetailsById{};
    }
    return history;
}

} // namespace brevlin
