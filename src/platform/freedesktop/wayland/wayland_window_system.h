#pragma once

#include "platform/window_system.h"

namespace brevlin {

/// Window management on Wayland, as far as a window can ask for it: the compositor chooses places.
class WaylandWindowSystem final : public WindowSystem
{
public:
    bool tellsPlaces() const override { return false; }
    /// What a shadow's margin is could be told, but not by Qt.
    bool supportsShadowMargins() const override { return false; }
    void setSupportChangeHandler(std::function<void()> /*handler*/) override {} // never changes
    bool isComposited() const override { return true; }
    void setShadowMargins(WindowId /*window*/, const Extents& /*extents*/) override {}
    /// Nobody tells of presses on other programs' windows.
    std::unique_ptr<PressWatch> watchPresses(std::function<void()> /*pressed*/) override { return nullptr; }
    bool putPixels(WindowId /*window*/, const Pixels& /*pixels*/) override { return false; }
    bool showWindowMenu(WindowId /*window*/, int /*x*/, int /*y*/) override { return false; }
    /// By its token (https://wayland.app/protocols/xdg-activation-v1).
    void activate(WindowId window, const std::string& token) override;
};

} // namespace brevlin
