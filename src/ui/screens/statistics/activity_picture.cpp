#include "ui/screens/statistics/activity_picture.h"

#include "ui/screens/statistics/granularity_row.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>

#include <algorithm>
#include <array>
#include <cmath>

namespace brevlin {

namespace {

constexpr int daysPerWeek = 7;
constexpr int levelCount = 5;

std::int64_t mostMinutes(const std::vector<FocusTimeBucket>& buckets, std::int64_t atLeast)
{
    for (const FocusTimeBucket& bucket : buckets) {
        atLeast = std::max(atLeast, bucket.focusMinutes);
    }
    return atLeast;
}

/// What tells the two bar charts apart.
struct BarChart
{
    double columnGap;
    double widestBar;
    double barTop; ///< of the tracks
    double barAreaHeight;
    double leastBar; ///< so that a single minute is seen
    std::int64_t leastCeiling;
};
constexpr BarChart hours{4, 12, 7, 72, 6, 50};
constexpr BarChart weekdays{14, 24, 14 + 7, 84, 7, 100};
constexpr double partGap = 7;

void addBars(ActivityPicture& picture, const BarChart& chart, const ActivityInput& input)
{
    const auto& buckets = input.statistics.buckets;
    const auto count = static_cast<double>(buckets.size());
    const double columnWidth = (picture.size.width() - chart.columnGap * (count - 1)) / count;
    const double barWidth = std::min(chart.widestBar, std::floor(columnWidth));
    const auto ceiling = static_cast<double>(mostMinutes(buckets, chart.leastCeiling));
    double left = 0;
    for (const FocusTimeBucket& bucket : buckets) {
        ActivityElement element;
        element.area =
            QRectF(left - chart.columnGap / 2, 0, columnWidth + chart.columnGap, picture.size.height());
        // On whole points, so that all bars have the same edges.
        element.shape = QRectF(std::round(left + (columnWidth - barWidth) / 2), chart.barTop, barWidth,
                               chart.barAreaHeight);
        if (bucket.focusMinutes >= 1) {
            element.barHeight = std::max(chart.leastBar, static_cast<double>(bucket.focusMinutes) *
                                                             chart.barAreaHeight / ceiling);
        }
        element.bucket = bucket;
        picture.elements.push_back(element);
        left += columnWidth + chart.columnGap;
    }
}

/// A line of text centred under or over an element's bar.
ActivityLabel columnLabel(const ActivityElement& element, double top, double height, QString text,
                          const QFont& font, ThemeColor color = ThemeColor::secondaryLabel)
{
    const double middle = element.shape.center().x();
    const double width = element.area.width();
    return {QRectF(middle - width / 2, top, width, height), Qt::AlignHCenter, std::move(text), font, color};
}

ActivityPicture hourChart(const ActivityInput& input, double width)
{
    constexpr double labelHeight = 12;
    constexpr int labelEvery = 3;
    ActivityPicture picture;
    picture.size = {width, 98};
    picture.cornerRadius = 4;
    addBars(picture, hours, input);
    const double top = hours.barTop + hours.barAreaHeight + partGap;
    for (const ActivityElement& element : picture.elements) {
        if (element.bucket.index % labelEvery == 0) {
            picture.labels.push_back(
                columnLabel(element, top, labelHeight,
                            QStringLiteral("%1").arg(element.bucket.index, 2, 10, QLatin1Char('0')),
                            textFont(TextRole::smallCaption)));
        }
    }
    return picture;
}

ActivityPicture weekChart(const ActivityInput& input, double width)
{
    constexpr double valueHeight = 14;
    constexpr double weekdayHeight = 16;
    constexpr double dayHeight = 14;
    const double weekdayTop = weekdays.barTop + weekdays.barAreaHeight + partGap;
    const double dayTop = weekdayTop + weekdayHeight + partGap;
    ActivityPicture picture;
    picture.size = {width, dayTop + dayHeight};
    picture.cornerRadius = 4;
    addBars(picture, weekdays, input);
    for (const ActivityElement& element : picture.elements) {
        const FocusTimeBucket& bucket = element.bucket;
        if (bucket.focusMinutes >= 1) {
            picture.labels.push_back(columnLabel(element, 0, valueHeight,
                                                 QString::number(bucket.focusMinutes),
                                                 textFont(TextRole::caption, QFont::Medium)));
        }
        picture.labels.push_back(columnLabel(element, weekdayTop, weekdayHeight,
                                             qtText(input.calendar.text("ccccc", bucket.start)),
                                             textFont(TextRole::callout, QFont::Medium), ThemeColor::label));
        const std::chrono::year_month_day date{input.calendar.localDay(bucket.start)};
        picture.labels.push_back(columnLabel(element, dayTop, dayHeight,
                                             QString::number(static_cast<unsigned>(date.day())),
                                             textFont(TextRole::smallCaption)));
    }
    return picture;
}

/// What tells the two heatmaps apart, and where their grid begins.
struct Heatmap
{
    double cellSize;
    double cellGap;
    double left;
    double top;
    double weekdayWidth;
    double weekdayGap; ///< from the weekdays' names to the cells
    TextRole textRole;
    Qt::Alignment weekdayAlignment;
};

double sideOf(double cellSize, double cellGap, int cells)
{
    return cells * (cellSize + cellGap) - cellGap;
}

int leadingEmptyCells(const ActivityInput& input)
{
    if (input.statistics.buckets.empty()) {
        return 0;
    }
    const std::chrono::weekday first{input.calendar.localDay(input.statistics.buckets.front().start)};
    return static_cast<int>((first - input.calendar.firstWeekday()).count());
}

int weekCount(const ActivityInput& input)
{
    const int slots = leadingEmptyCells(input) + static_cast<int>(input.statistics.buckets.size());
    return (slots + daysPerWeek - 1) / daysPerWeek;
}

QRectF cell(const Heatmap& map, int slot)
{
    const double step = map.cellSize + map.cellGap;
    const int column = slot / daysPerWeek;
    const int row = slot % daysPerWeek;
    return {map.left + map.weekdayWidth + map.weekdayGap + column * step, map.top + row * step, map.cellSize,
            map.cellSize};
}

void addCells(ActivityPicture& picture, const Heatmap& map, const ActivityInput& input,
              const std::optional<Instant>& lastDay)
{
    const double reach = map.cellGap / 2;
    int slot = leadingEmptyCells(input);
    for (const FocusTimeBucket& bucket : input.statistics.buckets) {
        if (lastDay && bucket.start > *lastDay) {
            break;
        }
        ActivityElement element;
        element.shape = cell(map, slot);
        element.area = element.shape.adjusted(-reach, -reach, reach, reach);
        element.level = heatLevel(bucket.focusMinutes);
        element.bucket = bucket;
        picture.elements.push_back(element);
        ++slot;
    }
}

void addWeekdays(ActivityPicture& picture, const Heatmap& map, const ActivityInput& input)
{
    // Every other row, without the last: closer they would not be read as easily.
    constexpr std::array labelledRows{0, 2, 4};
    const LocalDay anyDay = input.calendar.localDay(input.statistics.interval.start);
    const LocalDay firstWeekday = anyDay - (std::chrono::weekday{anyDay} - input.calendar.firstWeekday());
    for (const int row : labelledRows) {
        // Noon, for a date that never was begins on another weekday.
        const Instant noon = input.calendar.date(firstWeekday + std::chrono::days{row}, 12);
        const QRectF firstCell = cell(map, row);
        picture.labels.push_back({QRectF(map.left, firstCell.top(), map.weekdayWidth, map.cellSize),
                                  map.weekdayAlignment, qtText(input.calendar.text("ccccc", noon)),
                                  textFont(map.textRole), ThemeColor::secondaryLabel, false, true});
    }
}

/// From "less" to "more", ending at the right edge.
void addLegend(ActivityPicture& picture, const Heatmap& map, double right, double top, AppLanguage language)
{
    constexpr double gap = 4;
    const QFont font = textFont(map.textRole);
    const auto width = [&font](const QString& text) {
        return std::ceil(QFontMetricsF(font).horizontalAdvance(text));
    };
    const QString less = qtText(BilingualText{"少", "Less"}.in(language));
    const QString more = qtText(BilingualText{"多", "More"}.in(language));
    const auto addText = [&](const QString& text, double left) {
        picture.labels.push_back({QRectF(left, top, width(text), map.cellSize), Qt::AlignLeft, text, font,
                                  ThemeColor::secondaryLabel, true, true});
    };
    double left = right - width(more);
    addText(more, left);
    left -= levelCount * (map.cellSize + gap);
    for (int level = 0; level < levelCount; ++level) {
        picture.legend.emplace_back(left + level * (map.cellSize + gap), top, map.cellSize, map.cellSize);
    }
    addText(less, left - gap - width(less));
}

ActivityPicture monthHeatmap(const ActivityInput& input, double width)
{
    constexpr double legendGap = 18;
    Heatmap map{22, 5, 0, 0, 22, 8, TextRole::caption, Qt::AlignHCenter};
    const double gridHeight = sideOf(map.cellSize, map.cellGap, daysPerWeek);
    const double gridWidth =
        map.weekdayWidth + map.weekdayGap + sideOf(map.cellSize, map.cellGap, weekCount(input));
    map.left = std::max(0.0, std::floor((width - gridWidth) / 2));
    ActivityPicture picture;
    picture.size = {width, gridHeight + legendGap + map.cellSize};
    picture.cornerRadius = 4;
    picture.todayBorder = 1.5;
    picture.emptyCellBorder = 0.055;
    picture.filledCellBorder = 0.025;
    addCells(picture, map, input, std::nullopt);
    addWeekdays(picture, map, input);
    addLegend(picture, map, width, gridHeight + legendGap, input.language);
    return picture;
}

void addMonthNames(ActivityPicture& picture, const Heatmap& map, double top, double height,
                   const ActivityInput& input)
{
    const int leading = leadingEmptyCells(input);
    int slot = leading;
    for (const FocusTimeBucket& bucket : input.statistics.buckets) {
        const std::chrono::year_month_day date{input.calendar.localDay(bucket.start)};
        if (date.day() == std::chrono::day{1} || slot == leading) {
            picture.labels.push_back({QRectF(cell(map, slot).left(), top, map.cellSize, height),
                                      Qt::AlignLeft, qtText(input.calendar.text("LLL", bucket.start)),
                                      textFont(TextRole::smallCaption, QFont::Medium),
                                      ThemeColor::secondaryLabel, true});
        }
        ++slot;
    }
}

ActivityPicture yearHeatmap(const ActivityInput& input, double width)
{
    constexpr double padding = 2;
    constexpr double monthHeight = 13;
    constexpr double rowGap = 5;
    constexpr double legendPadding = 7;
    const Heatmap map{11, 3, 0, padding + monthHeight + rowGap, 25, 7, TextRole::smallCaption, Qt::AlignLeft};
    const double gridWidth =
        map.weekdayWidth + map.weekdayGap + sideOf(map.cellSize, map.cellGap, weekCount(input));
    const double legendTop =
        map.top + sideOf(map.cellSize, map.cellGap, daysPerWeek) + rowGap + legendPadding;
    ActivityPicture picture;
    picture.size = {gridWidth, legendTop + map.cellSize + padding};
    picture.pinnedWidth = map.weekdayWidth + map.weekdayGap;
    picture.cornerRadius = 2.5;
    picture.todayBorder = 1.25;
    picture.emptyCellBorder = 0.05;
    picture.filledCellBorder = 0.02;
    addCells(picture, map, input, input.startOfToday);
    addMonthNames(picture, map, padding, monthHeight, input);
    addWeekdays(picture, map, input);
    addLegend(picture, map, std::min(gridWidth, width), legendTop, input.language);
    return picture;
}

} // namespace

ActivityPicture activityPicture(const ActivityInput& input, double width)
{
    const StatisticsGranularity granularity = input.statistics.granularity;
    const ActivityForm form = granularityRow(granularity).form;
    ActivityPicture picture;
    switch (form) {
    case ActivityForm::hourChart:
        picture = hourChart(input, width);
        break;
    case ActivityForm::weekChart:
        picture = weekChart(input, width);
        break;
    case ActivityForm::monthHeatmap:
        picture = monthHeatmap(input, width);
        break;
    case ActivityForm::yearHeatmap:
        picture = yearHeatmap(input, width);
        break;
    }
    picture.granularity = granularity;
    picture.isHeatmap = form == ActivityForm::monthHeatmap || form == ActivityForm::yearHeatmap;
    const bool isByDay = row(granularity).bucketSize == FocusTimeBucketSize::day;
    for (ActivityElement& element : picture.elements) {
        element.isToday = isByDay && element.bucket.start == input.startOfToday;
    }
    return picture;
}

int heatLevel(std::int64_t focusMinutes)
{
    constexpr std::array<std::int64_t, levelCount - 1> from{1, 25, 50, 100};
    return static_cast<int>(std::upper_bound(from.begin(), from.end(), focusMinutes) - from.begin());
}

QColor heatColor(int level, const Theme& theme)
{
    constexpr std::array focusOpacity{0.0, 0.2, 0.38, 0.62, 0.88};
    if (level <= 0) {
        return theme.color(ThemeColor::label, 0.035);
    }
    return theme.color(ThemeColor::focus,
                       focusOpacity.at(static_cast<std::size_t>(std::min(level, levelCount - 1))));
}

std::size_t neighbor(const ActivityPicture& picture, std::size_t index, Qt::Key key)
{
    const std::ptrdiff_t sideways = picture.isHeatmap ? daysPerWeek : 1;
    const std::ptrdiff_t upright = picture.isHeatmap ? 1 : 0;
    std::ptrdiff_t target = static_cast<std::ptrdiff_t>(index);
    switch (key) {
    case Qt::Key_Left:
        target -= sideways;
        break;
    case Qt::Key_Right:
        target += sideways;
        break;
    case Qt::Key_Up:
        target -= upright;
        break;
    case Qt::Key_Down:
        target += upright;
        break;
    default:
        break;
    }
    const bool exists = target >= 0 && target < static_cast<std::ptrdiff_t>(picture.elements.size());
    return exists ? static_cast<std::size_t>(target) : index;
}

std::optional<std::size_t> elementAt(const ActivityPicture& picture, QPointF position)
{
    for (std::size_t index = 0; index < picture.elements.size(); ++index) {
        if (picture.elements[index].area.contains(position)) {
            return index;
        }
    }
    return std::nullopt;
}

} // namespace brevlin
