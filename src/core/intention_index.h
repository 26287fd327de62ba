#pragma once

#include "core/session_record.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// Every intention that a history knows, to be offered again. Holds its own copy of the texts.
class IntentionIndex final
{
public:
    IntentionIndex() = default;
    /// The records are sorted as in the history, latest end first.
    explicit IntentionIndex(std::span<const SessionRecord> records);

    /// The ones that begin with what was typed, and then those that have it further inside, each the newest
    /// first; letter case does not count. All of them where nothing was typed. What is typed itself is not
    /// offered.
    std::vector<std::string> find(std::string_view typed, std::size_t most) const;

private:
    struct Entry
    {
        SharedText text;
        std::string folded; // empty where it is the text itself
    };

    std::vector<Entry> m_entries; // the newest first
};

} // namespace brevlin
