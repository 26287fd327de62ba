#include "ui/screens/history/history_layout.h"

#include <algorithm>
#include <utility>

namespace brevlin {

HistoryLayout::HistoryLayout(HistoryDays days) : m_days(std::move(days))
{
    int top = topPadding;
    for (std::size_t day = 0; day < this->days().size(); ++day) {
        m_tops.push_back(top);
        top += cardHeight(day) + cardSpacing;
    }
    m_height = m_tops.empty() ? 0 : top - cardSpacing + bottomPadding;
}

std::size_t HistoryLayout::rowCount() const
{
    return days().empty() ? 0 : days().back().first + days().back().count;
}

// The last row has no rule below it.
int HistoryLayout::cardHeight(std::size_t day) const
{
    return headerHeight + static_cast<int>(days()[day].count) * rowHeight - 1;
}

int HistoryLayout::rowTop(std::size_t row) const
{
    const auto after =
        std::upper_bound(days().begin(), days().end(), row,
                         [](std::size_t value, const HistoryDay& day) { return value < day.first; });
    const auto day = static_cast<std::size_t>(after - days().begin()) - 1;
    return m_tops[day] + headerHeight + static_cast<int>(row - days()[day].first) * rowHeight;
}

std::size_t HistoryLayout::firstDayBelow(int y) const
{
    const auto after = std::upper_bound(m_tops.begin(), m_tops.end(), y);
    return after == m_tops.begin() ? 0 : static_cast<std::size_t>(after - m_tops.begin()) - 1;
}

std::optional<std::size_t> HistoryLayout::rowAt(int y) const
{
    if (days().empty()) {
        return std::nullopt;
    }
    const std::size_t day = firstDayBelow(y);
    const int within = y - m_tops[day] - headerHeight;
    const auto index = static_cast<std::size_t>(std::max(within, 0) / rowHeight);
    return within >= 0 && index < days()[day].count ? std::optional{days()[day].first + index} : std::nullopt;
}

std::optional<std::size_t> HistoryLayout::firstRowBelow(int y) const
{
    if (days().empty()) {
        return std::nullopt;
    }
    const std::size_t day = firstDayBelow(y);
    const int hidden = std::max(0, y - m_tops[day] - headerHeight);
    const auto above = static_cast<std::size_t>((hidden + rowHeight - 1) / rowHeight);
    return std::min(days()[day].first + above, rowCount() - 1);
}

} // namespace brevlin
