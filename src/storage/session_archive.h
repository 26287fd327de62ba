#pragma once

#include "core/expected.h"
#include "core/session_record.h"
#include "storage/document_error.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brevlin {

/// The format that this release writes; it reads this one and older ones.
inline constexpr std::int64_t sessionArchiveVersion = 1;

/// The history file: {"sessions":[…],"version":1}, in one line, every object with its keys sorted.
Expected<std::string, DocumentError> encodeSessionArchive(const std::vector<SessionRecord>& sessions);

/// The records of a history file, latest end first, those of the same instant as they stand in the file. All
/// or nothing: one unreadable record makes the whole file unreadable, for leaving it out would lose it with
/// the next write.
Expected<std::vector<SessionRecord>, DocumentError> decodeSessionArchive(const std::string& document);

} // namespace brevlin
