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
/// the others again would cost more than the disk does. A failed change leaves the text as it was.
class SessionArchiveText final
{
public:
    /// The text of an empty history.
    SessionArchiveText();

    std::string_view view() const { return std::string_view(m_buffer).substr(m_begin); }
    /// Takes the text of a file that decodes. It may be written in any way.
    void adopt(std::string document);
    Expected<void, DocumentError> encode(const std::vector<SessionRecord>& sessions);
    /// Puts the record in front of all others; false when there is no room and encode() has to do it.
    Expected<bool, DocumentError> prepend(const SessionRecord& record);

private:
    std::string m_buffer; // the text behind unused room
    std::size_t m_begin = 0;
    bool m_canGrow = false; // written by us, and not empty
};

/// The records of a history file, latest end first, those of the same instant as they stand in the file. All
/// or nothing: one unreadable record makes the whole file unreadable, for leaving it out would lose it with
/// the next write.
Expected<std::vector<SessionRecord>, DocumentError> decodeSessionArchive(const std::string& document);

} // namespace brevlin
