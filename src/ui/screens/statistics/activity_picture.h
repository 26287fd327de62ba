#pragma once

#include "core/calendar.h"
#include "core/language.h"
#include "core/statistics_calculator.h"
#include "ui/style/theme.h"

#include <QFont>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace brevlin {

/// All that a chart shows.
struct ActivityInput
{
    PeriodStatistics statistics;
    Calendar calendar; ///< in the language's form
    AppLanguage language = AppLanguage::simplifiedChinese;
    Instant startOfToday;
};

/// A bar with its track, or the cell of a day.
struct ActivityElement
{
    QRectF area;          ///< where a pointer finds it; the areas of a chart have no gaps
    QRectF shape;         ///< the track or the cell
    double barHeight = 0; ///< from the bottom of the track; 0 in a heatmap
    int level = 0;        ///< of heat, 0 to 4; 0 in a bar chart
    bool isToday = false; ///< never of an hour
    FocusTimeBucket bucket;
};

/// One line of text, made smaller where its room is too narrow.
struct ActivityLabel
{
    QRectF rect;
    Qt::Alignment alignment;
    QString text;
    QFont font;
    ThemeColor color = ThemeColor::secondaryLabel;
    bool mayOverhang = false; ///< over what is empty after it
    bool isPinned = false;    ///< stays where it is while the chart is moved sideways
};

/// A chart as plain values in points, from the chart's top left corner: what remains is to paint them.
struct ActivityPicture
{
    StatisticsGranularity granularity = StatisticsGranularity::week;
    bool isHeatmap = false;
    QSizeF size;            ///< of a year, possibly wider than what was asked for
    double pinnedWidth = 0; ///< of the leading part that is not moved sideways
    double cornerRadius = 0;
    double todayBorder = 0;     ///< in points
    double emptyCellBorder = 0; ///< opacity of the hairline around the cell of a day with nothing done
    double filledCellBorder = 0;
    std::vector<ActivityElement> elements;
    std::vector<ActivityLabel> labels;
    std::vector<QRectF> legend; ///< squares of the levels 0 to 4; pinned
};

/// The chart of the period's granularity in a room of this width.
ActivityPicture activityPicture(const ActivityInput& input, double width);

/// 0 for nothing, then 1 to 4 from 1, 25, 50 and 100 minutes on.
int heatLevel(std::int64_t focusMinutes);
/// The colour of a level; what lies beyond 0 to 4 counts as the nearest.
QColor heatColor(int level, const Theme& theme);

/// Where an arrow key leads from one element: to the hour or day beside it in time or, sideways in a heatmap,
/// to the same weekday of the week beside it. Stays where there is none.
std::size_t neighbor(const ActivityPicture& picture, std::size_t index, Qt::Key key);
std::optional<std::size_t> elementAt(const ActivityPicture& picture, QPointF position);

} // namespace brevlin
