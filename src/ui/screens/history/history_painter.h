#pragma once

#include "core/timer_vocabulary.h"
#include "ui/screens/history/history_days.h"
#include "ui/style/theme.h"

#include <QFont>
#include <QRect>
#include <QString>

class QPainter;

namespace brevlin {

/// How a row looks besides its record.
struct HistoryRowState
{
    bool isHovered = false;
    bool isSelected = false; ///< it was chosen, or its menu is open
    bool showsFocusRing = false;
    bool isLastOfDay = false;
};

/// Draws the parts of a day's card. Holds the fonts, which take longer to make than a row takes to draw.
class HistoryPainter final
{
public:
    HistoryPainter();

    /// The card without its contents; `visible` is the part that matters.
    static void paintCard(QPainter& painter, const QRect& card, const QRect& visible, const Theme& theme);
    void paintHeader(QPainter& painter, const QRect& header, const QString& date, const QString& summary,
                     const Theme& theme) const;
    void paintRow(QPainter& painter, const QRect& row, const SessionRecord& record,
                  const HistoryRowTexts& texts, const HistoryRowState& state, const Theme& theme) const;

private:
    void paintTitle(QPainter& painter, const QRectF& room, const HistoryRowTexts& texts,
                    SessionOutcome outcome, const Theme& theme) const;

    QFont m_date;
    QFont m_summary;
    QFont m_phase;
    QFont m_outcome;
    QFont m_duration;
    QFont m_timeRange;
    QFont m_intention;
};

} // namespace brevlin
