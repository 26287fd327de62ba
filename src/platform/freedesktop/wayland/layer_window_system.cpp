#include "platform/freedesktop/wayland/layer_window_system.h"

#include "platform/freedesktop/wayland/wayland_windows.h"

#include <QGuiApplication>
#include <QRegion>
#include <QResizeEvent>
#include <QScreen>
#include <QWindow>

#include <LayerShellQt/Window>
#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

using LayerWindow = LayerShellQt::Window;

constexpr LayerWindow::Anchors allEdges{LayerWindow::AnchorTop | LayerWindow::AnchorBottom |
                                        LayerWindow::AnchorLeft | LayerWindow::AnchorRight};
constexpr LayerWindow::Anchors upperLeft{LayerWindow::AnchorTop | LayerWindow::AnchorLeft};

// How a surface meets what panels keep free of windows.
constexpr std::int32_t besidePanels = 0;
constexpr std::int32_t overPanels = -1;

QRect toQt(const FloatingWindowSystem::Rectangle& rect)
{
    return {rect.x, rect.y, rect.width, rect.height};
}

// The points that native pixels touch.
QRect touchedPoints(const FloatingWindowSystem::Rectangle& native, double scale)
{
    const auto first = [scale](int pixel) {
        return static_cast<int>(std::floor(pixel / scale));
    };
    const auto end = [scale](int pixel) {
        return static_cast<int>(std::ceil(pixel / scale));
    };
    return {QPoint(first(native.x), first(native.y)),
            QPoint(end(native.x + native.width) - 1, end(native.y + native.height) - 1)};
}

} // namespace

/// Learns how much of its screen panels leave free: a surface that fills that part is told its size, and need
/// not be painted for it.
class FreeAreaProbe final : public QWindow
{
public:
    FreeAreaProbe(QScreen* screen, std::function<void()> changed)
        : QWindow(screen), m_home(screen), m_changed(std::move(changed))
    {
        setFlags(Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput);
        create();
        auto* layer = LayerWindow::get(this);
        layer->setLayer(LayerWindow::LayerBackground);
        layer->setAnchors(allEdges);
        layer->setExclusiveZone(besidePanels);
        layer->setKeyboardInteractivity(LayerWindow::KeyboardInteractivityNone);
        layer->setCloseOnDismissed(false);
        layer->setScope(QStringLiteral("brevlin-measure"));
        show();
    }

    const QScreen* home() const { return m_home; }
    std::optional<QSize> freeSize() const { return m_size; }

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        if (isExposed() || event->oldSize().isValid()) {
            m_size = event->size();
            m_changed();
        }
    }

private:
    QPointer<QScreen> m_home;
    std::optional<QSize> m_size;
    std::function<void()> m_changed;
};

LayerWindowSystem::LayerWindowSystem()
{
    for (QScreen* screen : QGuiApplication::screens()) {
        measure(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &LayerWindowSystem::measure);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this](const QScreen* screen) {
        std::erase_if(m_probes, [screen](const auto& probe) { return probe->home() == screen; });
    });
}

LayerWindowSystem::~LayerWindowSystem() = default;

void LayerWindowSystem::measure(QScreen* screen)
{
    if (screen->geometry().isEmpty()) {
        return; // there is none, and Qt has made one up
    }
    m_probes.push_back(std::make_unique<FreeAreaProbe>(screen, [this] {
        if (m_changeHandler) {
            m_changeHandler();
        }
    }));
}

void LayerWindowSystem::setChangeHandler(std::function<void()> handler)
{
    m_changeHandler = std::move(handler);
}

void LayerWindowSystem::setShape(WindowId window, const Shape& shape)
{
    const auto found = m_surfaces.find(window);
    if (found == m_surfaces.end() || found->second.window == nullptr) {
        return;
    }
    QWindow& handle = *found->second.window;
    QRegion clicked;
    if (shape.clicked) {
        for (const Rectangle& part : *shape.clicked) {
            clicked += touchedPoints(part, handle.devicePixelRatio());
        }
    }
    handle.setMask(clicked); // an empty one is all of it
}

void LayerWindowSystem::adopt(WindowId window, Kind kind)
{
    QWindow* handle = windowWithId(window);
    if (handle == nullptr) {
        return;
    }
    std::erase_if(m_surfaces, [](const auto& each) { return each.second.window == nullptr; });
    m_surfaces[window] = {handle, kind, handle->screen()};
    const bool isCapsule = kind == Kind::capsule;
    auto* layer = LayerWindow::get(handle);
    layer->setLayer(LayerWindow::LayerOverlay);
    layer->setAnchors(isCapsule ? upperLeft : allEdges);
    layer->setExclusiveZone(isCapsule ? besidePanels : overPanels);
    layer->setKeyboardInteractivity(kind == Kind::stage ? LayerWindow::KeyboardInteractivityExclusive
                                                        : LayerWindow::KeyboardInteractivityNone);
    layer->setCloseOnDismissed(false);
    layer->setScope(isCapsule ? QStringLiteral("brevlin-capsule") : QStringLiteral("brevlin-panel"));
}

bool LayerWindowSystem::place(WindowId window, const Rectangle& area, const Point& on)
{
    const auto found = m_surfaces.find(window);
    if (found == m_surfaces.end() || found->second.window == nullptr) {
        return true; // nothing to place any more
    }
    Surface& surface = found->second;
    QScreen* screen = QGuiApplication::screenAt(QPoint(on.x, on.y));
    if (screen == nullptr) {
        screen = surface.screen != nullptr ? surface.screen.data() : QGuiApplication::primaryScreen();
    }
    if (!surface.window->isVisible()) {
        surface.window->setScreen(screen);
        surface.screen = screen;
    } else if (surface.screen != screen) {
        return false;
    }
    if (surface.kind == Kind::capsule) {
        const QPoint place = toQt(area).topLeft() - screen->geometry().topLeft();
        LayerWindow::get(surface.window)->setMargins({place.x(), place.y(), 0, 0});
    }
    return true;
}

bool LayerWindowSystem::isLost(WindowId window) const
{
    const auto found = m_surfaces.find(window);
    return found != m_surfaces.end() && found->second.window != nullptr &&
           found->second.window->isVisible() && found->second.screen == nullptr;
}

std::optional<FloatingWindowSystem::Size> LayerWindowSystem::freeSize(const Rectangle& screen) const
{
    for (const auto& probe : m_probes) {
        if (probe->home() != nullptr && probe->home()->geometry() == toQt(screen) && probe->freeSize()) {
            return Size{probe->freeSize()->width(), probe->freeSize()->height()};
        }
    }
    return std::nullopt;
}

} // namespace brevlin
