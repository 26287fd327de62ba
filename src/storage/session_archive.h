#pragma once

#include "core/expected.h"
#include "core/session_record.h"
#include "storage/document_error.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// The format that this release writes; it reads this one and older ones.
inline constexpr std::int64_t sessionArchiveVersion = 1;

/// The history file: {"sessions":[…],"version":1}, in one line, every object with its keys sorted. The text
/// is kept between two writes: nearly every change adds one record in front, and writing the numbers of all
/// the others again would cost more than the disk does.
class SessionArchiveText final
{
public:
    /// The text of these records; the view holds until the next call.
    Expected<std::string_view, DocumentError> encode(const std::vector<SessionRecord>& sessions);
    /// The same for the records of the last successful encoding with one new record in front of them.
    Expected<std::string_view, DocumentError> encodeWithNewFirst(const std::vector<SessionRecord>& sessions);
    /// To be called when what was encoded last does not hold.
    void forget() { m_buffer.clear(); }

private:
    std::string m_buffer; // the text behind unused room; empty when there is none
    std::size_t m_begin = 0;
};

/// The records of a history file, latest end first, those of the same instant as they stand in the file. All
/// or nothing: one unreadable record makes the whole file unreadable, for leaving it out would lose it with
/// the next write.
Expected<std::vector<SessionRecord>, DocumentError> decodeSessionArchive(const std::string& document);

} // namespace brevlin
