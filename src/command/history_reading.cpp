#include "command/history_reading.h"

#include "storage/history_file.h"
#include "storage/session_archive_scanner.h"
#include "storage/session_details_document.h"
#include "storage/session_details_file.h"

#include <string>
#include <utility>

namespace brevlin {

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
        auto records = readSessionArchive((*content)->bytes);
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
