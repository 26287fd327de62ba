#include "ui/capsule/panel_placement.h"

#include <utility>

namespace brevlin {

namespace {

PanelFrame bannerArea(const BannerPlace& place, const PanelFrame& visible)
{
    const double x = place.position == BannerPlace::Position::topCentre ? visible.midX() - place.width / 2
                                                                        : visible.maxX() - place.width;
    return {x, visible.maxY() - place.height, place.width, place.height};
}

} // namespace

PanelPlacement::PanelPlacement(TopPanelPositionStore& store) : m_store(store) {}

void PanelPlacement::setScreens(PanelScreens screens)
{
    m_screens = std::move(screens);
    // Nobody chose that place, so it follows the desktop's panels, which may come up after the program.
    if (m_isAtDefaultPlace) {
        m_stablePosition.reset();
    }
}

const PanelScreen* PanelPlacement::resolvedScreen()
{
    if (m_screens.all.empty()) {
        return nullptr;
    }
    const PanelScreen* preferred = PanelGeometry::screenWithDisplayID(m_screens.all, m_preferredDisplay);
    const PanelScreen* screen = preferred != nullptr ? preferred : &m_screens.all.at(m_screens.main);
    m_preferredDisplay = screen->displayID;
    return screen;
}

const PanelScreen* PanelPlacement::stableScreen() const
{
    return m_stablePosition ? PanelGeometry::screenWithDisplayID(m_screens.all, m_stablePosition->displayID)
                            : nullptr;
}

std::optional<PanelFrame> PanelPlacement::place(const CapsuleLayout& layout)
{
    m_layout = layout;
    const PanelScreen* screen = resolvedScreen();
    if (screen == nullptr) {
        return std::nullopt;
    }
    if (!m_stablePosition || m_stablePosition->displayID != screen->displayID) {
        const auto saved = m_store.load();
        m_isAtDefaultPlace = !saved;
        m_stablePosition = saved ? PanelGeometry::restoredPosition(*saved, layout, m_screens.all, *screen)
                                 : PanelGeometry::defaultPosition(layout, *screen);
    }
    if (const PanelScreen* own = stableScreen()) {
        screen = own;
        m_preferredDisplay = own->displayID;
    }
    const PanelFrame frame = PanelGeometry::placedFrame(*m_stablePosition, layout, screen->visibleFrame);
    return layout == CapsuleLayouts::island ? clearOfBanners(frame, *screen) : frame;
}

// Only as far as it lies under the banner, and back at its place when it is a circle again.
PanelFrame PanelPlacement::clearOfBanners(const PanelFrame& island, const PanelScreen& screen) const
{
    const bool isOnTheirScreen = screen.displayID == m_screens.all.at(m_screens.main).displayID;
    if (!m_bannerPlace || m_bannerPlace->hasQuietList || !isOnTheirScreen) {
        return island;
    }
    const PanelFrame banner = bannerArea(*m_bannerPlace, screen.visibleFrame);
    if (!PanelGeometry::intersect(island, banner)) {
        return island;
    }
    PanelFrame below = island;
    below.y = banner.y - CapsuleLayouts::island.topMargin - island.height;
    return PanelGeometry::clamped(below, screen.visibleFrame);
}

bool PanelPlacement::meetsIsland(const BannerPlace& place)
{
    const CapsuleLayout now = m_layout;
    const auto island = this->place(CapsuleLayouts::island);
    m_layout = now;
    return island && !m_screens.all.empty() &&
           PanelGeometry::intersect(*island,
                                    bannerArea(place, m_screens.all.at(m_screens.main).visibleFrame));
}

HorizontalAnchor PanelPlacement::preferredExpansionAnchor(double width) const
{
    const PanelScreen* screen = stableScreen();
    return screen != nullptr ? PanelGeometry::preferredExpansionAnchor(
                                   *m_stablePosition, width, m_layout.horizontalMargin, screen->visibleFrame)
                             : HorizontalAnchor::leading;
}

void PanelPlacement::beginDrag(const PanelFrame& frame)
{
    const StablePosition position = m_stablePosition.value_or(
        PanelGeometry::stablePosition(frame, m_layout.horizontalAnchor, m_preferredDisplay));
    m_drag = Drag{frame, position, frame};
}

PanelFrame PanelPlacement::dragBy(double x, double y)
{
    PanelFrame& frame = m_drag->frame;
    frame.x = m_drag->start.x + x;
    frame.y = m_drag->start.y + y;
    const PanelScreen* screen = PanelGeometry::screenContaining(m_screens.all, {frame.midX(), frame.midY()});
    if (screen == nullptr) {
        screen = PanelGeometry::screenWithDisplayID(m_screens.all, m_preferredDisplay);
    }
    if (screen != nullptr) {
        m_preferredDisplay = screen->displayID;
    }
    m_stablePosition = StablePosition{m_preferredDisplay, m_drag->startPosition.compactCenterX + x,
                                      m_drag->startPosition.topY + y};
    m_isAtDefaultPlace = false;
    return frame;
}

std::optional<PanelFrame> PanelPlacement::finishDrag()
{
    const PanelFrame frame = m_drag->frame;
    m_drag.reset();
    const PanelScreen* screen = stableScreen();
    if (screen == nullptr) {
        return place(m_layout);
    }
    m_stablePosition = PanelGeometry::snapped(*m_stablePosition, frame, screen->visibleFrame);
    // A place that cannot be kept is only a place lost: the next drag tries again.
    (void)m_store.save(PanelGeometry::savedPosition(*m_stablePosition, *screen));
    return PanelGeometry::placedFrame(*m_stablePosition, m_layout, screen->visibleFrame);
}

} // namespace brevlin
