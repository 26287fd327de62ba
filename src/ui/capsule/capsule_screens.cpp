#include "ui/capsule/capsule_screens.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

// FNV-1a (http://www.isthe.com/chongo/tech/comp/fnv/): unlike qHash the same in every run.
std::uint32_t hash(const QString& text)
{
    std::uint32_t value = 2166136261U;
    for (const char byte : text.toUtf8()) {
        value = (value ^ static_cast<unsigned char>(byte)) * 16777619U;
    }
    return value;
}

QString monitorName(const ScreenIdentity& screen)
{
    constexpr QChar separator = u'\n';
    return screen.manufacturer + separator + screen.model + separator + screen.serialNumber;
}

QRect toPoints(const FloatingWindowSystem::Rectangle& area, const ScreenFacts& screen)
{
    // A screen's origin is the same number in points and in native pixels.
    const QPoint origin = screen.geometry.topLeft();
    const auto scaled = [&](int value) {
        return static_cast<int>(std::lround(value / screen.scale));
    };
    return {origin.x() + scaled(area.x - origin.x()), origin.y() + scaled(area.y - origin.y()),
            scaled(area.width), scaled(area.height)};
}

QRect without(const QRect& rect, const QRect& area, FloatingWindowSystem::Edge edge)
{
    QRect rest = rect;
    switch (edge) {
    case FloatingWindowSystem::Edge::left:
        rest.setLeft(std::max(rest.left(), area.right() + 1));
        break;
    case FloatingWindowSystem::Edge::right:
        rest.setRight(std::min(rest.right(), area.left() - 1));
        break;
    case FloatingWindowSystem::Edge::top:
        rest.setTop(std::max(rest.top(), area.bottom() + 1));
        break;
    case FloatingWindowSystem::Edge::bottom:
        rest.setBottom(std::min(rest.bottom(), area.top() - 1));
        break;
    }
    return rest;
}

QRect freeGeometry(const QScreen& screen, const FloatingWindowSystem& system)
{
    const QRect whole = screen.geometry();
    if (const auto free = system.freeSize({whole.x(), whole.y(), whole.width(), whole.height()})) {
        return {whole.topLeft(), QSize(free->width, free->height)};
    }
    return screen.availableGeometry();
}

} // namespace

std::vector<std::uint32_t> displayNumbers(const std::vector<ScreenIdentity>& screens)
{
    std::vector<std::uint32_t> numbers;
    for (const ScreenIdentity& screen : screens) {
        const QString name = monitorName(screen);
        const auto twins = std::count_if(screens.begin(), screens.end(), [&](const ScreenIdentity& other) {
            return monitorName(other) == name;
        });
        const bool tellsItself = !screen.serialNumber.isEmpty() && twins == 1;
        numbers.push_back(hash(tellsItself ? name : screen.connector));
    }
    return numbers;
}

QRect visibleGeometry(const ScreenFacts& screen,
                      const std::vector<FloatingWindowSystem::ReservedArea>& reservedAreas)
{
    QRect visible = screen.availableGeometry;
    for (const auto& reserved : reservedAreas) {
        const QRect area = toPoints(reserved.area, screen);
        const QRect rest = without(visible, area, reserved.edge);
        const bool isOnAnotherScreen =
            rest.width() < screen.geometry.width() / 2 || rest.height() < screen.geometry.height() / 2;
        if (area.intersects(visible) && !isOnAnotherScreen) {
            visible = rest;
        }
    }
    return visible;
}

CapsuleScreens capsuleScreens(const std::vector<ScreenFacts>& screens,
                              const std::vector<FloatingWindowSystem::ReservedArea>& reservedAreas)
{
    std::vector<ScreenIdentity> identities;
    identities.reserve(screens.size());
    for (const ScreenFacts& screen : screens) {
        identities.push_back(screen.identity);
    }
    const auto numbers = displayNumbers(identities);
    CapsuleScreens result;
    for (std::size_t index = 0; index < screens.size(); ++index) {
        const ScreenFacts& screen = screens[index];
        const QRect& primary = screens.front().geometry;
        result.all.push_back({numbers[index], fromQt(screen.geometry, primary),
                              fromQt(visibleGeometry(screen, reservedAreas), primary)});
    }
    return result;
}

CapsuleScreens currentCapsuleScreens(const FloatingWindowSystem& system)
{
    std::vector<ScreenFacts> screens;
    for (const QScreen* screen : QGuiApplication::screens()) { // Qt lists the primary one first
        if (screen->geometry().isEmpty()) {
            continue; // it stands for those of a desktop that has none now
        }
        screens.push_back({{screen->manufacturer(), screen->model(), screen->serialNumber(), screen->name()},
                           screen->geometry(),
                           freeGeometry(*screen, system),
                           screen->devicePixelRatio()});
    }
    return capsuleScreens(screens, system.reservedAreas());
}

QRect toQt(const CapsuleFrame& frame, const QRect& primary)
{
    const auto rounded = [](double value) {
        return static_cast<int>(std::lround(value));
    };
    const int bottom = primary.top() + primary.height();
    const int left = rounded(frame.x);
    const int top = rounded(bottom - frame.maxY());
    return {left, top, rounded(frame.width), rounded(frame.height)};
}

CapsuleFrame fromQt(const QRect& rect, const QRect& primary)
{
    const int bottom = primary.top() + primary.height();
    return {static_cast<double>(rect.left()), static_cast<double>(bottom - rect.top() - rect.height()),
            static_cast<double>(rect.width()), static_cast<double>(rect.height())};
}

} // namespace brevlin
