#pragma once

#include "core/session_record.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// Gives equal texts as one. Forgets what it has not met for long, so it stays small.
class TextPool final
{
public:
    SharedText shared(std::string_view text)
    {
        SharedText& kept = m_texts[std::hash<std::string_view>{}(text) % m_texts.size()];
        if (kept.view() != text) {
            kept = SharedText(text);
        }
        return kept;
    }

private:
    std::array<SharedText, 1024> m_texts;
};

/// The records of a history file in exactly the form in which we write it, as they stand there, with room for
/// some more; nothing for any other text, valid or not, which is the JSON library's to read. It builds a tree
/// of the whole file first, and that takes longer than all the rest of a start with a long history.
std::optional<std::vector<SessionRecord>> scanSessionArchive(std::string_view text, std::size_t spareRecords);

} // namespace brevlin
