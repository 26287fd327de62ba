#include "ui/tray/tray_panel_origin.h"

#include <algorithm>
#include <vector>

namespace brevlin {

namespace {

// Half of a status item and a little more: the work area does not know every bar of the desktop.
constexpr int itemReach = 16;
constexpr int gap = 6;

int clamped(int start, int length, int areaStart, int areaLength)
{
    return std::max(areaStart, std::min(start, areaStart + areaLength - length));
}

struct Bar
{
    Qt::Edge edge;
    int thickness;
};

// Those that the work area leaves out, the likeliest for status icons first.
std::vector<Bar> barsOf(const QRect& screen, const QRect& workArea)
{
    std::vector<Bar> bars;
    for (const Bar& bar : {Bar{Qt::TopEdge, workArea.top() - screen.top()},
                           Bar{Qt::BottomEdge, screen.bottom() - workArea.bottom()},
                           Bar{Qt::RightEdge, screen.right() - workArea.right()},
                           Bar{Qt::LeftEdge, workArea.left() - screen.left()}}) {
        if (bar.thickness > 0) {
            bars.push_back(bar);
        }
    }
    return bars;
}

int distance(const QPoint& point, const QRect& screen, Qt::Edge edge)
{
    switch (edge) {
    case Qt::TopEdge:
        return point.y() - screen.top();
    case Qt::BottomEdge:
        return screen.bottom() - point.y();
    case Qt::LeftEdge:
        return point.x() - screen.left();
    case Qt::RightEdge:
        return screen.right() - point.x();
    }
    return 0;
}

} // namespace

QPoint panelOrigin(const QPoint& wanted, const QSize& size, const QRect& screen, const QRect& workArea)
{
    // The bus lets a host tell any number.
    const QPoint anchor(std::clamp(wanted.x(), screen.left(), screen.right()),
                        std::clamp(wanted.y(), screen.top(), screen.bottom()));
    const int left = anchor.x() - screen.left();
    const int top = anchor.y() - screen.top();
    const int right = screen.right() - anchor.x();
    const int bottom = screen.bottom() - anchor.y();
    const int nearest = std::min({left, top, right, bottom});

    QPoint origin(anchor.x() - size.width() / 2, anchor.y() - size.height() / 2);
    // In a corner the item belongs to a bar along the top or the bottom more often than to one at the side.
    const bool isAtBottom = nearest == bottom || (nearest != top && bottom <= itemReach * 2);
    const bool isAtTop = nearest == top || (!isAtBottom && top <= itemReach * 2);
    if (isAtTop) {
        origin.setY(anchor.y() + itemReach);
    } else if (isAtBottom) {
        origin.setY(anchor.y() - itemReach - size.height());
    } else {
        origin.setX(nearest == left ? anchor.x() + itemReach : anchor.x() - itemReach - size.width());
    }
    const QRect area = workArea.adjusted(gap, gap, -gap, -gap);
    return {clamped(origin.x(), size.width(), area.left(), area.width()),
            clamped(origin.y(), size.height(), area.top(), area.height())};
}

QPoint likelyAnchor(const QRect& screen, const QRect& workArea, const std::optional<QPoint>& pointer)
{
    std::vector<Bar> bars = barsOf(screen, workArea);
    if (bars.empty()) {
        bars.push_back({Qt::TopEdge, 2 * itemReach});
    }
    const Bar bar = pointer ? *std::min_element(bars.begin(), bars.end(),
                                                [&](const Bar& one, const Bar& other) {
                                                    return distance(*pointer, screen, one.edge) <
                                                           distance(*pointer, screen, other.edge);
                                                })
                            : bars.front();
    const QPoint end = pointer.value_or(screen.bottomRight());
    switch (bar.edge) {
    case Qt::TopEdge:
        return {end.x(), screen.top() + bar.thickness / 2};
    case Qt::BottomEdge:
        return {end.x(), screen.bottom() - bar.thickness / 2};
    case Qt::LeftEdge:
        return {screen.left() + bar.thickness / 2, end.y()};
    case Qt::RightEdge:
        return {screen.right() - bar.thickness / 2, end.y()};
    }
    return end;
}

bool canBeOnBar(const QPoint& point, const QRect& screen, const QRect& workArea)
{
    // A place on the icon itself, as bars give it that do not know where they are.
    constexpr int largestIcon = 64;
    const bool isOnIcon = QRect(0, 0, largestIcon, largestIcon).contains(point);
    if (isOnIcon || !screen.contains(point)) {
        return false;
    }
    if (!barsOf(screen, workArea).empty()) {
        return !workArea.contains(point);
    }
    constexpr int thickest = 96;
    return !screen.adjusted(thickest, thickest, -thickest, -thickest).contains(point);
}

} // namespace brevlin
