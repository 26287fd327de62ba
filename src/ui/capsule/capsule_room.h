#pragma once

#include "platform/layer_surfaces.h"
#include "ui/capsule/capsule_surface.h"

namespace brevlin {

class CapsuleGhost;

/// A window that the desktop lays somewhere. A new size would take effect at another moment than a new
/// place, and the capsule would tremble: so the window is a room of constant size in which the capsule grows.
/// While the capsule is in somebody's hand the room lies still, for desktops differ in what they tell of the
/// pointer above a surface that moves, and a ghost that no pointer meets goes along.
class CapsuleRoom final : public CapsuleSurface
{
public:
    CapsuleRoom(QWidget& window, QWidget& view, LayerSurfaces& layers);
    ~CapsuleRoom() override;

    void prepare() override;
    void show() override;
    QRect area() const override { return m_area; }
    bool hold(const QRect& area) override;
    void moveBy(const QPoint& way) override;
    bool connects(const QRect& from, const QRect& to) const override;
    void setOpacity(double opacity) override;
    std::optional<QRect> clickedOnTheWay(const QRect& way) const override { return way; }
    bool isLost() const override;
    void takeEffect() override;
    void lift() override;
    void drop() override;

private:
    QRect viewFrame() const;
    QRect screenGeometry(const QPoint& point) const;
    void place(const QPoint& on);
    void followGhost();
    void showOpacity(double opacity);

    QWidget& m_window;
    QWidget& m_view;
    LayerSurfaces& m_layers;
    QRect m_area;
    double m_opacity = 1;
    bool m_isLifted = false;
    QPoint m_liftedFrom;
    std::unique_ptr<CapsuleGhost> m_ghost; // made when the capsule is first lifted
};

/// Where the room lies that holds this area, points: inside the screen as far as it can, so that the layouts
/// which the capsule grows into at its place have room, too.
QRect roomAround(const QRect& area, const QRect& screen);

} // namespace brevlin
