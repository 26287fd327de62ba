#include "ui/main/window_placement.h"

#include "ui/capsule/capsule_screens.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cstdlib>

namespace brevlin {

namespace {

// What a window manager's own rounding and a scale of native pixels make of a centred place, points.
constexpr int centreTolerance = 3;

int area(const QRect& rect)
{
    return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

QRect centredIn(const QRect& workArea, const QSize& size)
{
    return {workArea.x() + (workArea.width() - size.width()) / 2,
            workArea.y() + (workArea.height() - size.height()) / 2, size.width(), size.height()};
}

} // namespace

QRect workArea(const QScreen& screen, const FloatingWindowSystem& floatingWindows)
{
    const QRect available = screen.availableGeometry();
    // With one screen Qt knows the desktop's floatingWindows, unless the desktop does not tell them in the
    // usual way.
    if (QGuiApplication::screens().size() == 1 && available != screen.geometry()) {
        return available;
    }
    return visibleGeometry({{}, screen.geometry(), available, screen.devicePixelRatio()},
                           floatingWindows.reservedAreas());
}

std::vector<QRect> workAreas(const FloatingWindowSystem& floatingWindows)
{
    std::vector<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens()) { // Qt lists the primary one first
        areas.push_back(workArea(*screen, floatingWindows));
    }
    return areas;
}

QRect placedInside(const WindowGeometry& wanted, const QSize& least, const std::vector<QRect>& workAreas)
{
    const QSize size = QSize(wanted.width, wanted.height).expandedTo(least);
    if (workAreas.empty()) {
        return {QPoint(), size};
    }
    QRect rect(wanted.place ? QPoint(wanted.place->x, wanted.place->y) : QPoint(), size);
    const auto overlap = [&rect](const QRect& one, const QRect& other) {
        return area(rect.intersected(one)) < area(rect.intersected(other));
    };
    const auto best = std::max_element(workAreas.begin(), workAreas.end(), overlap);
    // Where it does not lie on any screen, its place means nothing any more.
    if (!wanted.place || !best->intersects(rect)) {
        return centredIn(workAreas.front(), size.boundedTo(workAreas.front().size()));
    }
    rect.setSize(size.boundedTo(best->size()));
    rect.moveLeft(std::clamp(rect.left(), best->left(), best->right() + 1 - rect.width()));
    rect.moveTop(std::clamp(rect.top(), best->top(), best->bottom() + 1 - rect.height()));
    return rect;
}

std::optional<WindowPlace> placeToRemember(const QRect& rect, const std::vector<QRect>& workAreas)
{
    if (!workAreas.empty()) {
        const QPoint off = rect.topLeft() - centredIn(workAreas.front(), rect.size()).topLeft();
        if (std::abs(off.x()) <= centreTolerance && std::abs(off.y()) <= centreTolerance) {
            return std::nullopt;
        }
    }
    return WindowPlace{rect.x(), rect.y()};
}

QSize leastSizeOn(const std::vector<QRect>& workAreas, const QSize& least)
{
    QSize size = least;
    for (const QRect& one : workAreas) {
        size = size.boundedTo(one.size());
    }
    return size;
}

} // namespace brevlin
