#include "ui/screens/statistics/activity_painter.h"

#include "ui/style/focus_ring.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>

namespace brevlin {

namespace {

/// The path of a frame just inside the shape.
void addFrame(QPainterPath& path, const QRectF& shape, double radius, double width)
{
    path.addPath(continuousRoundedRect(shape, radius));
    path.addPath(
        continuousRoundedRect(shape.adjusted(width, width, -width, -width), std::max(0.0, radius - width)));
}

QRectF barOf(const ActivityElement& element)
{
    QRectF bar = element.shape;
    bar.setTop(bar.bottom() - element.barHeight);
    return bar;
}

// Every kind of shape of a chart is one path: filling hundreds of small ones takes far longer.
void paintBars(QPainter& painter, const ActivityPicture& picture, const Theme& theme)
{
    QPainterPath tracks;
    QPainterPath frames;
    QPainterPath bars;
    const double hairline = hairlineWidth(painter);
    for (const ActivityElement& element : picture.elements) {
        const QRectF track = alignedToPixels(painter, element.shape);
        tracks.addPath(continuousRoundedRect(track, picture.cornerRadius));
        addFrame(frames, track, picture.cornerRadius, hairline);
        if (element.barHeight > 0) {
            bars.addPath(continuousRoundedRect(alignedToPixels(painter, barOf(element)),
                                               std::min(picture.cornerRadius, element.barHeight / 2)));
        }
    }
    painter.fillPath(tracks, theme.color(ThemeColor::label, 0.035));
    painter.fillPath(frames, theme.color(ThemeColor::label, 0.055));
    painter.fillPath(bars, theme.color(ThemeColor::focus, 0.84));
}

void paintCells(QPainter& painter, const ActivityPicture& picture, const Theme& theme)
{
    constexpr std::size_t levels = 5;
    std::array<QPainterPath, levels> cells;
    QPainterPath emptyFrames;
    QPainterPath filledFrames;
    QPainterPath today;
    const double hairline = hairlineWidth(painter);
    const auto add = [&](const QRectF& shape, int level, bool isToday) {
        const QRectF aligned = alignedToPixels(painter, shape);
        cells.at(static_cast<std::size_t>(level))
            .addPath(continuousRoundedRect(aligned, picture.cornerRadius));
        if (isToday) {
            addFrame(today, aligned, picture.cornerRadius, picture.todayBorder);
        } else {
            addFrame(level == 0 ? emptyFrames : filledFrames, aligned, picture.cornerRadius, hairline);
        }
    };
    for (const ActivityElement& element : picture.elements) {
        add(element.shape, element.level, element.isToday);
    }
    for (std::size_t level = 0; level < picture.legend.size(); ++level) {
        add(picture.legend[level], static_cast<int>(level), false);
    }
    for (std::size_t level = 0; level < levels; ++level) {
        painter.fillPath(cells[level], heatColor(static_cast<int>(level), theme));
    }
    const bool isYear = picture.granularity == StatisticsGranularity::year;
    painter.fillPath(emptyFrames, theme.color(ThemeColor::label, isYear ? 0.05 : 0.055));
    painter.fillPath(filledFrames, theme.color(ThemeColor::label, isYear ? 0.02 : 0.025));
    painter.fillPath(today, theme.color(ThemeColor::focus));
}

void paintLabel(QPainter& painter, const ActivityLabel& label, const Theme& theme)
{
    painter.setPen(theme.color(label.color));
    const double needed = QFontMetricsF(label.font).horizontalAdvance(label.text);
    if (label.mayOverhang || needed <= label.rect.width()) {
        painter.setFont(label.font);
        drawTextOnBaseline(painter, label.rect, label.alignment, label.text);
        return;
    }
    QFont smaller = label.font;
    smaller.setPixelSize(
        std::max(1, static_cast<int>(QFontMetricsF(label.font).height() > 0
                                         ? label.font.pixelSize() * label.rect.width() / needed
                                         : 1)));
    painter.setFont(smaller);
    drawTextOnBaseline(painter, label.rect, label.alignment, label.text);
}

} // namespace

void paintActivity(QPainter& painter, const ActivityPicture& picture, const Theme& theme)
{
    painter.setRenderHint(QPainter::Antialiasing);
    if (picture.isHeatmap()) {
        paintCells(painter, picture, theme);
    } else {
        paintBars(painter, picture, theme);
    }
    for (const ActivityLabel& label : picture.labels) {
        paintLabel(painter, label, theme);
    }
}

void paintPointedAt(QPainter& painter, const ActivityPicture& picture, std::size_t index, const Theme& theme)
{
    constexpr double frameWidth = 1.5;
    const ActivityElement& element = picture.elements.at(index);
    const QRectF shape = alignedToPixels(painter, element.shape);
    painter.setRenderHint(QPainter::Antialiasing);
    if (picture.isHeatmap()) {
        QPainterPath frame;
        addFrame(frame, shape, picture.cornerRadius, frameWidth);
        painter.fillPath(frame, theme.color(ThemeColor::label, 0.6));
        return;
    }
    painter.fillPath(continuousRoundedRect(shape, picture.cornerRadius),
                     theme.color(ThemeColor::label, 0.08));
    if (element.barHeight > 0) {
        painter.fillPath(continuousRoundedRect(alignedToPixels(painter, barOf(element)),
                                               std::min(picture.cornerRadius, element.barHeight / 2)),
                         theme.color(ThemeColor::focus));
    }
}

void paintFocused(QPainter& painter, const ActivityPicture& picture, std::size_t index, const Theme& theme)
{
    constexpr double distance = 3; // the smallest gap between cells
    const QRectF ring = picture.elements.at(index).shape.adjusted(-distance, -distance, distance, distance);
    paintFocusRing(painter, ring, picture.cornerRadius + distance, theme);
}

} // namespace brevlin
