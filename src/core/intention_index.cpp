#include "core/intention_index.h"

#include "core/intention.h"

#include <algorithm>
#include <unordered_set>

namespace brevlin {

IntentionIndex::IntentionIndex(std::span<const SessionRecord> records)
{
    std::unordered_set<std::string_view> known; // views into the texts that the entries share
    std::string_view before;
    for (const SessionRecord& record : records) {
        const std::string_view text = record.intention.view();
        // Neighbours often share one text.
        if (text.empty() || text.data() == before.data() || !known.insert(text).second) {
            continue;
        }
        before = text;
        std::string lower = foldedCase(text);
        m_entries.push_back({record.intention, lower == text ? std::string{} : std::move(lower)});
    }
}

std::vector<std::string> IntentionIndex::find(std::string_view typed, std::size_t most) const
{
    const std::string wanted = foldedCase(typed);
    std::vector<std::string> result;
    std::vector<std::string> inside;
    for (const Entry& entry : m_entries) {
        const std::string_view text = entry.text.view();
        const std::size_t at = (entry.folded.empty() ? text : std::string_view{entry.folded}).find(wanted);
        if (at == std::string_view::npos || text == typed) {
            continue;
        }
        if (at == 0) {
            result.emplace_back(text);
            if (result.size() == most) {
                return result;
            }
        } else if (inside.size() < most) {
            inside.emplace_back(text);
        }
    }
    inside.resize(std::min(inside.size(), most - result.size()));
    result.insert(result.end(), inside.begin(), inside.end());
    return result;
}

} // namespace brevlin
