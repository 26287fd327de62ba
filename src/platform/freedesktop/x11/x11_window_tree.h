#pragma once

#include "platform/floating_window_system.h"
#include "platform/freedesktop/x11/x11_connection.h"

#include <optional>
#include <vector>

namespace brevlin {

/// A window right below the root that is seen, or would be if nothing lay above it.
struct TopLevelWindow
{
    xcb_window_t id = XCB_WINDOW_NONE;
    bool isManaged = false;               ///< the window manager governs it, or one in it that it frames
    bool isTheServers = false;            ///< the overlay that compositors draw to
    FloatingWindowSystem::Rectangle area; ///< native pixels of the desktop
};

/// The mapped windows below the root, the lowest first.
std::vector<TopLevelWindow> topLevelWindows(const X11Connection& x11);

/// The uppermost managed window that lies above this one; none where this one is above them all.
std::optional<xcb_window_t> highestManagedAbove(const std::vector<TopLevelWindow>& windows,
                                                xcb_window_t window);
/// The window above all managed ones, other than this one, that nobody governs and that covers one of the
/// screens.
std::optional<xcb_window_t> coveringWindow(const std::vector<TopLevelWindow>& windows, xcb_window_t other,
                                           const std::vector<FloatingWindowSystem::Rectangle>& screens);

} // namespace brevlin
