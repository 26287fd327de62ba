#include "ui/screens/statistics/activity_painter.h"

#include "ui/style/focus_ring.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <algorithm>
#include <map>
#include <tuple>

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

void paintBar(QPainter& painter, const ActivityPicture& picture, const ActivityElement& element,
              const QColor& color)
{
    const QRectF bar = alignedToPixels(painter, barOf(element));
    painter.fillPath(continuousRoundedRect(bar, std::min(picture.cornerRadius, bar.height() / 2)), color);
}

void paintBars(QPainter& painter, const ActivityPicture& picture, const Theme& theme)
{
    const double hairline = hairlineWidth(painter);
    for (const ActivityElement& element : picture.elements) {
        const QRectF track = alignedToPixels(painter, element.shape);
        painter.fillPath(continuousRoundedRect(track, picture.cornerRadius),
                         theme.color(ThemeColor::label, 0.035));
        QPainterPath frame;
        addFrame(frame, track, picture.cornerRadius, hairline);
        painter.fillPath(frame, theme.color(ThemeColor::label, 0.055));
        if (element.barHeight > 0) {
            paintBar(painter, picture, element, theme.color(ThemeColor::focus, 0.84));
        }
    }
}

/// Pictures of the few kinds of cells that a heatmap has: copying one takes a fraction of the time in which
/// its path is filled, and a year has hundreds.
class CellStamps final
{
public:
    CellStamps(QPainter& painter, const ActivityPicture& picture, const Theme& theme)
        : m_painter(painter), m_picture(picture), m_theme(theme), m_ratio(pixelsPerPoint(painter))
    {}

    void paint(const QRectF& shape, int level, bool isToday)
    {
        const QRectF aligned = alignedToPixels(m_painter, shape);
        const QSize pixels = (aligned.size() * m_ratio).toSize();
        QPixmap& stamp = m_stamps[{level, isToday, pixels.width(), pixels.height()}];
        if (stamp.isNull()) {
            stamp = make(pixels, level, isToday);
        }
        m_painter.drawPixmap(aligned.topLeft(), stamp);
    }

private:
    QPixmap make(const QSize& pixels, int level, bool isToday) const
    {
        QPixmap stamp(pixels);
        stamp.setDevicePixelRatio(m_ratio);
        stamp.fill(Qt::transparent);
        QPainter painter(&stamp);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF shape(QPointF(), QSizeF(pixels) / m_ratio);
        painter.fillPath(continuousRoundedRect(shape, m_picture.cornerRadius), heatColor(level, m_theme));
        QPainterPath frame;
        addFrame(frame, shape, m_picture.cornerRadius,
                 isToday ? m_picture.todayBorder : hairlineWidth(painter));
        painter.fillPath(frame, frameColor(level, isToday));
        return stamp;
    }

    QColor frameColor(int level, bool isToday) const
    {
        if (isToday) {
            return m_theme.color(ThemeColor::focus);
        }
        return m_theme.color(ThemeColor::label,
                             level == 0 ? m_picture.emptyCellBorder : m_picture.filledCellBorder);
    }

    QPainter& m_painter;
    const ActivityPicture& m_picture;
    const Theme& m_theme;
    double m_ratio;
    std::map<std::tuple<int, bool, int, int>, QPixmap> m_stamps; // by level, today and size in pixels
};

void paintCells(QPainter& painter, const ActivityPicture& picture, const Theme& theme)
{
    CellStamps stamps(painter, picture, theme);
    for (const ActivityElement& element : picture.elements) {
        stamps.paint(element.shape, element.level, element.isToday);
    }
}

void paintLegend(QPainter& painter, const ActivityPicture& picture, const Theme& theme)
{
    CellStamps stamps(painter, picture, theme);
    for (std::size_t level = 0; level < picture.legend.size(); ++level) {
        stamps.paint(picture.legend[level], static_cast<int>(level), false);
    }
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

void paintLabels(QPainter& painter, const ActivityPicture& picture, bool arePinned, const Theme& theme)
{
    for (const ActivityLabel& label : picture.labels) {
        if (label.isPinned == arePinned) {
            paintLabel(painter, label, theme);
        }
    }
}

} // namespace

void paintActivity(QPainter& painter, const ActivityPicture& picture, const Theme& theme)
{
    painter.setRenderHint(QPainter::Antialiasing);
    if (picture.isHeatmap) {
        paintCells(painter, picture, theme);
    } else {
        paintBars(painter, picture, theme);
    }
    paintLabels(painter, picture, false, theme);
}

void paintPinned(QPainter& painter, const ActivityPicture& picture, const Theme& theme)
{
    painter.setRenderHint(QPainter::Antialiasing);
    paintLegend(painter, picture, theme);
    paintLabels(painter, picture, true, theme);
}

void paintPointedAt(QPainter& painter, const ActivityPicture& picture, std::size_t index, const Theme& theme)
{
    constexpr double frameWidth = 1.5;
    const ActivityElement& element = picture.elements.at(index);
    const QRectF shape = alignedToPixels(painter, element.shape);
    painter.setRenderHint(QPainter::Antialiasing);
    if (picture.isHeatmap) {
        QPainterPath frame;
        addFrame(frame, shape, picture.cornerRadius, frameWidth);
        painter.fillPath(frame, theme.color(ThemeColor::label, 0.6));
        return;
    }
    painter.fillPath(continuousRoundedRect(shape, picture.cornerRadius),
                     theme.color(ThemeColor::label, 0.08));
    if (element.barHeight > 0) {
        paintBar(painter, picture, element, theme.color(ThemeColor::focus));
    }
}

void paintFocused(QPainter& painter, const ActivityPicture& picture, std::size_t index, const Theme& theme)
{
    constexpr double distance = 3; // the smallest gap between cells
    const QRectF ring = picture.elements.at(index).shape.adjusted(-distance, -distance, distance, distance);
    paintFocusRing(painter, ring, picture.cornerRadius + distance, theme);
}

} // namespace brevlin
