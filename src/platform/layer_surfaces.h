#pragma once

#include "platform/floating_window_system.h"

namespace brevlin {

/// Windows on a desktop where none knows or chooses its place: each lies on a layer above all others of its
/// screen, and the system lays it there. Lengths are points. Places are counted as if the upper left corner
/// of a screen were that of the part which the desktop's panels leave free: where that is, nobody tells.
class LayerSurfaces
{
public:
    using WindowId = FloatingWindowSystem::WindowId;
    using Rectangle = FloatingWindowSystem::Rectangle;

    struct Point
    {
        int x = 0;
        int y = 0;
    };

    enum class Kind {
        capsule, ///< lies where it is placed, and never gets the keyboard
        curtain, ///< fills its screen, panels and all
        stage,   ///< a curtain that has the keyboard while it is shown
    };

    virtual ~LayerSurfaces() = default;

    /// To be called for a window that is not shown, before anything else here.
    virtual void adopt(WindowId window, Kind kind) = 0;
    /// Lays a window there, from its next picture on. It belongs to the screen on which `on` lies; of a
    /// curtain only that counts. False where a window that is shown has to be hidden and shown again to get
    /// there.
    virtual bool place(WindowId window, const Rectangle& area, const Point& on) = 0;
    /// Whether the screen of a window that is shown has gone, and the window with it.
    virtual bool isLost(WindowId window) const = 0;
};

} // namespace brevlin
