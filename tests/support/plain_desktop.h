#pragma once

#include "platform/floating_window_system.h"
#include "platform/window_system.h"

namespace brevlin::test {

/// A window manager that offers nothing special.
class PlainWindowSystem final : public WindowSystem
{
public:
    bool tellsPlaces() const override { return placesAreTold; }
    bool supportsShadowMargins() const override { return false; }
    bool isComposited() const override { return false; }
    void setSupportChangeHandler(std::function<void()> /*handler*/) override {}
    void setShadowMargins(WindowId /*window*/, const Extents& /*extents*/) override {}
    std::unique_ptr<PressWatch> watchPresses(std::function<void()> /*pressed*/) override { return nullptr; }
    bool putPixels(WindowId /*window*/, const Pixels& /*pixels*/) override { return false; }
    bool showWindowMenu(WindowId /*window*/, int /*x*/, int /*y*/) override { return false; }
    void activate(WindowId /*window*/, const std::string& /*token*/) override {}

    bool placesAreTold = true;
};

/// A desktop without panels.
class NoPanels : public FloatingWindowSystem
{
public:
    void prepareToShow(WindowId /*window*/) override {}
    void keepAbove(WindowId /*window*/) override {}
    void prepareResize(WindowId /*window*/, const Rectangle& /*from*/, const Rectangle& /*to*/) override {}
    void setShape(WindowId /*window*/, const Shape& /*shape*/) override {}
    bool isScreenCovered() override { return false; }
    PointerSight pointerSight() const override { return PointerSight::everywhere; }
    bool isComposited() const override { return false; }
    bool blurs() const override { return false; }
    void setBlurredPart(WindowId /*window*/, const std::vector<Rectangle>& /*part*/) override {}
    std::vector<ReservedArea> reservedAreas() const override { return {}; }
    void setChangeHandler(std::function<void()> /*handler*/) override {}
};

} // namespace brevlin::test
