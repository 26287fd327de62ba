#pragma once

#include "platform/layer_surfaces.h"

#include <map>
#include <utility>

namespace brevlin::test {

/// A desktop that lays windows, and keeps where.
class FakeLayers final : public LayerSurfaces
{
public:
    void adopt(WindowId window, Kind kind) override { kinds[window] = kind; }
    bool place(WindowId window, const Rectangle& area, const Point& /*on*/) override
    {
        areas[window] = area;
        ++placings[window];
        return !std::exchange(hasToBeShownAnew, false);
    }
    bool isLost(WindowId window) const override { return lost == window; }

    std::map<WindowId, Kind> kinds;
    std::map<WindowId, Rectangle> areas;
    std::map<WindowId, int> placings;
    bool hasToBeShownAnew = false;
    WindowId lost = 0;
};

} // namespace brevlin::test
