#include "ui/capsule/capsule_surface.h"

#include "ui/capsule/capsule_room.h"

#include <QWidget>

namespace brevlin {

namespace {

/// A window that is as large as what it shows, and goes there itself.
class MovedSurface final : public CapsuleSurface
{
public:
    MovedSurface(QWidget& window, FloatingWindowSystem& system) : m_window(window), m_system(system) {}

    void prepare() override { m_system.prepareToShow(m_window.winId()); }

    void show() override
    {
        m_window.show();
        m_system.keepAbove(m_window.winId());
    }

    QRect area() const override { return m_window.geometry(); }

    bool hold(const QRect& area) override
    {
        if (area == m_window.geometry()) {
            return false;
        }
        m_system.prepareResize(m_window.winId(), nativeRectangle(m_window.geometry(), m_window),
                               nativeRectangle(area, m_window));
        m_window.setGeometry(area);
        return true;
    }

    void moveBy(const QPoint& way) override { m_window.move(m_window.pos() + way); }
    bool connects(const QRect& /*from*/, const QRect& /*to*/) const override { return true; }
    void setOpacity(double opacity) override { m_window.setWindowOpacity(opacity); }
    std::optional<QRect> clickedOnTheWay(const QRect& /*way*/) const override { return std::nullopt; }
    bool isLost() const override { return false; }
    void takeEffect() override {} // as it does by itself
    // It is always where the pointer has taken it.
    void lift() override {}
    void drop() override {}

private:
    QWidget& m_window;
    FloatingWindowSystem& m_system;
};

} // namespace

std::unique_ptr<CapsuleSurface> makeCapsuleSurface(QWidget& window, QWidget& view,
                                                   FloatingWindowSystem& system)
{
    if (LayerSurfaces* layers = system.layers()) {
        return std::make_unique<CapsuleRoom>(window, view, *layers);
    }
    return std::make_unique<MovedSurface>(window, system);
}

FloatingWindowSystem::Rectangle nativeRectangle(const QRect& rect, const QWidget& window)
{
    const double scale = window.devicePixelRatioF();
    return {qRound(rect.x() * scale), qRound(rect.y() * scale), qRound(rect.width() * scale),
            qRound(rect.height() * scale)};
}

} // namespace brevlin
