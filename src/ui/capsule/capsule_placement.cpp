#include "ui/capsule/capsule_placement.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

CapsuleFrame bannerArea(const BannerPlace& place, const CapsuleFrame& visible)
{
    const double x = place.position == BannerPlace::Position::topCentre ? visible.midX() - place.width / 2
                                                                        : visible.maxX() - place.width;
    return {x, visible.maxY() - place.height, place.width, place.height};
}

} // namespace

CapsulePlacement::CapsulePlacement(CapsulePositionStore& store) : m_store(store) {}

void CapsulePlacement::setScreens(CapsuleScreens screens)
{
    m_screens = std::move(screens);
    // Nobody chose that place, so it follows the desktop's panels, which may come up after the program.
    if (m_isAtDefaultPlace) {
        m_stablePosition.reset();
    }
}

const CapsuleScreen* CapsulePlacement::resolvedScreen()
{
    if (m_screens.all.empty()) {
        return nullptr;
    }
    const CapsuleScreen* preferred = CapsuleGeometry::screenWithDisplayID(m_screens.all, m_preferredDisplay);
    const CapsuleScreen* screen = preferred != nullptr ? preferred : &m_screens.all.at(m_screens.main);
    m_preferredDisplay = screen->displayID;
    return screen;
}

const CapsuleScreen* CapsulePlacement::stableScreen() const
{
    return m_stablePosition ? CapsuleGeometry::screenWithDisplayID(m_screens.all, m_stablePosition->displayID)
                            : nullptr;
}

std::optional<CapsuleFrame> CapsulePlacement::place(const CapsuleLayout& layout)
{
    m_layout = layout;
    const CapsuleScreen* screen = resolvedScreen();
    if (screen == nullptr) {
        return std::nullopt;
    }
    if (!m_stablePosition || m_stablePosition->displayID != screen->displayID) {
        const auto saved = m_store.load();
        m_isAtDefaultPlace = !saved;
        m_stablePosition = saved ? CapsuleGeometry::restoredPosition(*saved, layout, m_screens.all, *screen)
                                 : CapsuleGeometry::defaultPosition(layout, *screen);
    }
    if (const CapsuleScreen* own = stableScreen()) {
        screen = own;
        m_preferredDisplay = own->displayID;
    }
    const CapsuleFrame frame = CapsuleGeometry::placedFrame(*m_stablePosition, layout, screen->visibleFrame);
    return layout == CapsuleLayouts::island ? clearOfBanners(frame, *screen) : frame;
}

// Only as far as it lies under the banner, and back at its place when it is a circle again.
CapsuleFrame CapsulePlacement::clearOfBanners(const CapsuleFrame& island, const CapsuleScreen& screen) const
{
    const bool isOnTheirScreen = screen.displayID == m_screens.all.at(m_screens.main).displayID;
    if (!m_bannerPlace || m_bannerPlace->hasQuietList || !isOnTheirScreen) {
        return island;
    }
    const CapsuleFrame banner = bannerArea(*m_bannerPlace, screen.visibleFrame);
    if (!CapsuleGeometry::intersect(island, banner)) {
        return island;
    }
    CapsuleFrame below = island;
    below.y = banner.y - CapsuleLayouts::island.topMargin - island.height;
    return CapsuleGeometry::clamped(below, screen.visibleFrame);
}

bool CapsulePlacement::meetsIsland(const BannerPlace& place)
{
    const CapsuleLayout now = m_layout;
    const auto island = this->place(CapsuleLayouts::island);
    m_layout = now;
    return island && !m_screens.all.empty() &&
           CapsuleGeometry::intersect(*island,
                                      bannerArea(place, m_screens.all.at(m_screens.main).visibleFrame));
}

HorizontalAnchor CapsulePlacement::preferredExpansionAnchor(double width) const
{
    const CapsuleScreen* screen = stableScreen();
    return screen != nullptr ? CapsuleGeometry::preferredExpansionAnchor(
                                   *m_stablePosition, width, m_layout.horizontalMargin, screen->visibleFrame)
                             : HorizontalAnchor::leading;
}

std::optional<CapsuleFrame> CapsulePlacement::circle()
{
    const CapsuleLayout now = m_layout;
    const auto frame =
        place(CapsuleLayouts::capsule(CapsuleLayouts::circleDiameter, HorizontalAnchor::center));
    m_layout = now;
    return stableScreen() != nullptr ? frame : std::nullopt;
}

std::optional<CapsulePlace> CapsulePlacement::circlePlace()
{
    const auto frame = circle();
    if (!frame) {
        return std::nullopt;
    }
    const CapsuleFrame& visible = stableScreen()->visibleFrame;
    return CapsulePlace{(frame->x - visible.x) / (visible.width - frame->width),
                        (visible.maxY() - frame->maxY()) / (visible.height - frame->height)};
}

std::optional<CapsuleFrame> CapsulePlacement::moveCircleTo(const CapsulePlace& place)
{
    const auto from = circle();
    if (!from) {
        return std::nullopt;
    }
    const CapsuleScreen screen = *stableScreen();
    const CapsuleFrame wanted = wantedCircle(place, *from, screen);
    const StablePosition before =
        CapsuleGeometry::stablePosition(*from, HorizontalAnchor::center, screen.displayID);
    const auto drag = [&](double right) {
        m_stablePosition = before;
        beginDrag(*from);
        dragBy(right, wanted.y - from->y);
        return finishDrag();
    };
    const double right = wanted.x - from->x;
    auto frame = drag(right);
    if (right != 0 && m_stablePosition->displayID == before.displayID &&
        std::abs(m_stablePosition->compactCenterX - before.compactCenterX) < 1) {
        // Back at the edge that it shall leave: no smaller step gets away from there.
        frame = drag(std::copysign(CapsuleGeometry::snapDistance + 1, right));
    }
    return frame;
}

// Wholly beyond the edge where there is a screen, else at the edge.
CapsuleFrame CapsulePlacement::wantedCircle(const CapsulePlace& place, const CapsuleFrame& circle,
                                            const CapsuleScreen& screen) const
{
    const CapsuleFrame& visible = screen.visibleFrame;
    const auto inside = [](double share) {
        return std::clamp(share, 0.0, 1.0);
    };
    CapsuleFrame wanted = circle;
    wanted.x = visible.x + inside(place.x) * (visible.width - circle.width);
    wanted.y = visible.maxY() - circle.height - inside(place.y) * (visible.height - circle.height);
    CapsuleFrame beyond = wanted;
    if (place.x < 0 || place.x > 1) {
        beyond.x = place.x < 0 ? screen.frame.x - circle.width : screen.frame.maxX();
    }
    if (place.y < 0 || place.y > 1) {
        beyond.y = place.y < 0 ? screen.frame.maxY() : screen.frame.y - circle.height;
    }
    const bool isOnScreen =
        CapsuleGeometry::screenContaining(m_screens.all, {beyond.midX(), beyond.midY()}) != nullptr;
    return isOnScreen ? beyond : wanted;
}

void CapsulePlacement::beginDrag(const CapsuleFrame& frame)
{
    const StablePosition position = m_stablePosition.value_or(
        CapsuleGeometry::stablePosition(frame, m_layout.horizontalAnchor, m_preferredDisplay));
    m_drag = Drag{frame, position, frame};
}

CapsuleFrame CapsulePlacement::dragBy(double x, double y)
{
    CapsuleFrame& frame = m_drag->frame;
    frame.x = m_drag->start.x + x;
    frame.y = m_drag->start.y + y;
    const CapsuleScreen* screen =
        CapsuleGeometry::screenContaining(m_screens.all, {frame.midX(), frame.midY()});
    if (screen == nullptr) {
        screen = CapsuleGeometry::screenWithDisplayID(m_screens.all, m_preferredDisplay);
    }
    if (screen != nullptr) {
        m_preferredDisplay = screen->displayID;
    }
    m_stablePosition = StablePosition{m_preferredDisplay, m_drag->startPosition.compactCenterX + x,
                                      m_drag->startPosition.topY + y};
    m_isAtDefaultPlace = false;
    return frame;
}

std::optional<CapsuleFrame> CapsulePlacement::finishDrag()
{
    const CapsuleFrame frame = m_drag->frame;
    m_drag.reset();
    const CapsuleScreen* screen = stableScreen();
    if (screen == nullptr) {
        return place(m_layout);
    }
    m_stablePosition = CapsuleGeometry::snapped(*m_stablePosition, frame, screen->visibleFrame);
    // A place that cannot be kept is only a place lost: the next drag tries again.
    (void)m_store.save(CapsuleGeometry::savedPosition(*m_stablePosition, *screen));
    return CapsuleGeometry::placedFrame(*m_stablePosition, m_layout, screen->visibleFrame);
}

} // namespace brevlin
