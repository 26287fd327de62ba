#pragma once

#include "core/calendar.h"
#include "core/session_record.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// What the user looks for in the history. Words of the text all have to be met: one of an intention, in any
/// letter case; `#label` by a label that begins so, `#"label"` by that label alone; "an intention" in
/// quotation marks by exactly that one. Nothing between the marks stands for no intention and for no label. A
/// date (2026-01-31, 2026-1, 2026/1/31, 2026年1月31日) by the day or month on which the phase ended.
class HistoryFilter final
{
public:
    HistoryFilter() = default;
    explicit HistoryFilter(std::string_view text);

    bool isEmpty() const
    {
        return m_words.empty() && m_labels.empty() && !m_exact && !m_label && m_dates.empty();
    }
    bool matches(const SessionRecord& record, const Calendar& calendar) const;

private:
    struct Date
    {
        int year;
        std::optional<unsigned> month;
        std::optional<unsigned> day;
    };

    static std::optional<Date> dateOf(std::string_view word);
    void add(std::string_view word);

    std::vector<std::string> m_words; // folded, as are the labels
    std::vector<std::string> m_labels;
    std::optional<std::string> m_exact;
    std::optional<std::string> m_label; // folded; empty for none
    std::vector<Date> m_dates;
};

} // namespace brevlin
