#include "ui/menu_bar/panel_origin.h"

#include <algorithm>

namespace brevlin {

namespace {

// Half of a status item and a little more: the work area does not know every bar of the desktop.
constexpr int itemReach = 16;
constexpr int gap = 6;

int clamped(int start, int length, int areaStart, int areaLength)
{
    return std::max(areaStart, std::min(start, areaStart + areaLength - length));
}

} // namespace

QPoint panelOrigin(const QPoint& anchor, const QSize& size, const QRect& screen, const QRect& workArea)
{
    const int left = anchor.x() - screen.left();
    const int top = anchor.y() - screen.top();
    const int right = screen.right() - anchor.x();
    const int bottom = screen.bottom() - anchor.y();
    const int nearest = std::min({left, top, right, bottom});

    QPoint origin(anchor.x() - size.width() / 2, anchor.y() - size.height() / 2);
    // In a corner the item belongs to a bar along the top or the bottom more often than to one at the side.
    if (nearest == top) {
        origin.setY(anchor.y() + itemReach);
    } else if (nearest == bottom || bottom <= itemReach * 2) {
        origin.setY(anchor.y() - itemReach - size.height());
    } else if (top <= itemReach * 2) {
        origin.setY(anchor.y() + itemReach);
    } else {
        origin.setX(nearest == left ? anchor.x() + itemReach : anchor.x() - itemReach - size.width());
    }
    const QRect area = workArea.adjusted(gap, gap, -gap, -gap);
    return {clamped(origin.x(), size.width(), area.left(), area.width()),
            clamped(origin.y(), size.height(), area.top(), area.height())};
}

} // namespace brevlin
