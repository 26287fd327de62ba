#pragma once

#include "core/expected.h"
#include "core/session_record.h"
#include "platform/durable_file.h"
#include "storage/document_error.h"
#include "storage/history_file.h"

#include <optional>
#include <vector>

namespace brevlin {

struct ReadHistory
{
    std::vector<SessionRecord> records; ///< latest end first
    std::optional<FileStamp> stamp;     ///< of the file in its place; none: there is no such file
};

/// Reads the history, or where there is none the one of the first release, and writes nothing. A missing one
/// is empty.
Expected<ReadHistory, DocumentError> readHistory(const HistoryLocation& location, const DurableFile& files);

} // namespace brevlin
