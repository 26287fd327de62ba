#pragma once

#include "ui/screens/history/history_days.h"

#include <optional>
#include <vector>

namespace brevlin {

/// Where the days' cards and their rows lie, one below the other; points from the top of the whole list.
class HistoryLayout final
{
public:
    static constexpr int topPadding = 24;
    static constexpr int bottomPadding = 28;
    static constexpr int cardSpacing = 14;
    static constexpr int headerHeight = 44;
    static constexpr int rowHeight = 55; ///< with the rule below it

    HistoryLayout() = default;
    explicit HistoryLayout(HistoryDays days);

    const std::vector<HistoryDay>& days() const { return m_days.days(); }
    std::size_t recordIndex(std::size_t row) const { return m_days.recordIndex(row); }
    std::size_t rowCount() const;
    int height() const { return m_height; }

    int cardTop(std::size_t day) const { return m_tops[day]; }
    int cardHeight(std::size_t day) const;
    int rowTop(std::size_t row) const;
    std::optional<std::size_t> rowAt(int y) const;
    /// The first row that lies wholly below this height, else the last one; none in an empty list.
    std::optional<std::size_t> firstRowBelow(int y) const;
    /// The first day of which something may be seen below this height.
    std::size_t firstDayBelow(int y) const;

private:
    HistoryDays m_days;
    std::vector<int> m_tops; // of the days' cards
    int m_height = 0;
};

} // namespace brevlin
