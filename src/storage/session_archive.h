#pragma once

#include "core/expected.h"
#include "core/session_record.h"
#include "storage/document_error.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// The format that this release writes; it reads this one and older ones.
inline constexpr std::int64_t sessionArchiveVersion = 1;

// The history file: {"sessions":[…],"version":1}, in one line, every object with its keys sorted, and the
// records by their end, the latest first.

/// What the text of every history begins with; behind it stand the records.
inline constexpr std::string_view sessionArchiveOpening = R"({"sessions":[)";

enum class RecordOrder { latestFirst, latestLast };

/// The whole text, or the first value that JSON cannot express.
Expected<std::string, DocumentError> encodeSessionArchive(std::span<const SessionRecord> records,
                                                          RecordOrder order = RecordOrder::latestFirst);
/// What stands in place of the opening of a text of ours, that of an empty history excepted, to put these
/// records, the latest last, in front of all of its own.
Expected<std::string, DocumentError> encodeSessionArchiveStart(std::span<const SessionRecord> records);

/// The records of a history file, latest end first, those of the same instant as they stand in the file. All
/// or nothing: one unreadable record makes the whole file unreadable, for leaving it out would lose it with
/// the next write. A text with 64 bytes of spare capacity is not copied.
Expected<std::vector<SessionRecord>, DocumentError> decodeSessionArchive(const std::string& document);

} // namespace brevlin
