#include "ui/capsule/panel_placement.h"

#include <utility>

namespace brevlin {

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
    return PanelGeometry::placedFrame(*m_stablePosition, layout, screen->visibleFrame);
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
