#pragma once

#include "platform/layer_surfaces.h"

#include <QObject>
#include <QPointer>

#include <map>
#include <memory>
#include <vector>

class QScreen;
class QWindow;

namespace brevlin {

class FreeAreaProbe;

/// Floating windows on Wayland, as surfaces of the overlay layer
/// (https://wayland.app/protocols/wlr-layer-shell-unstable-v1): above every window on every workspace, full
/// screen or not, and below what locks the session. The compositor sees to that by itself.
class LayerWindowSystem final : public QObject, public FloatingWindowSystem, public LayerSurfaces
{
public:
    using WindowId = FloatingWindowSystem::WindowId;
    using Rectangle = FloatingWindowSystem::Rectangle;

    LayerWindowSystem();
    ~LayerWindowSystem() override;

    LayerSurfaces* layers() override { return this; }
    std::optional<Size> freeSize(const Rectangle& screen) const override;
    void setShape(WindowId window, const Shape& shape) override;
    PointerSight pointerSight() const override { return PointerSight::inside; }
    bool isComposited() const override { return true; }
    void setChangeHandler(std::function<void()> handler) override;

    // What the layer is by itself, and what no protocol tells or offers.
    void prepareToShow(WindowId /*window*/) override {}
    void keepAbove(WindowId /*window*/) override {}
    void prepareResize(WindowId /*window*/, const Rectangle& /*from*/, const Rectangle& /*to*/) override {}
    bool isScreenCovered() override { return false; }
    bool blurs() const override { return false; }
    void setBlurredPart(WindowId /*window*/, const std::vector<Rectangle>& /*part*/) override {}
    std::vector<ReservedArea> reservedAreas() const override { return {}; }

    void adopt(WindowId window, Kind kind) override;
    bool place(WindowId window, const Rectangle& area, const Point& on) override;
    bool isLost(WindowId window) const override;

private:
    struct Surface
    {
        QPointer<QWindow> window;
        Kind kind = Kind::capsule;
        QPointer<QScreen> screen; // on which it is, or will be shown
    };

    void measure(QScreen* screen);

    std::map<WindowId, Surface> m_surfaces;
    std::vector<std::unique_ptr<FreeAreaProbe>> m_probes; // one for each screen
    std::function<void()> m_changeHandler;
};

} // namespace brevlin
