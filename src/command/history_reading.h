#pragma once

#include "core/expected.h"
#include "core/session_details.h"
#include "core/session_record.h"
#include "platform/durable_file.h"
#include "storage/document_error.h"

#include <optional>
#include <string>
#include <vector>

namespace brevlin {

struct ReadHistory
{
    std::vector<SessionRecord> records; ///< latest end first
    SessionDetailsById details;         ///< none where they do not decode: they are not what counts
    std::optional<FileStamp> stamp;     ///< of the file in its place; none: there is no such file
};

/// Reads the history below the user's folder for application data, or where there is none the one of the
/// first release, and writes nothing. A missing one is empty.
Expected<ReadHistory, DocumentError> readHistory(const std::string& dataFolder, const DurableFile& files);

} // namespace brevlin
