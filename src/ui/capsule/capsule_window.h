#pragma once

#include "platform/floating_window_system.h"
#include "ui/capsule/capsule_shape.h"
#include "ui/capsule/capsule_surface.h"
#include "ui/capsule/top_capsule_view.h"
#include "ui/style/animation.h"

#include <QEasingCurve>
#include <QWidget>

#include <memory>
#include <optional>
#include <vector>

namespace brevlin {

/// The window that carries the capsule, governed by no window manager. At rest it is exactly as large as the
/// capsule, where it places itself, and lets clicks beside its round ends through; while the capsule moves it
/// spans the way, so that nothing has to be resized with every frame. Where the pointer's leaving may stay
/// unseen, it has a margin while the pointer is inside. All rectangles are points of the desktop.
class CapsuleWindow final : public QWidget
{
    Q_OBJECT

public:
    explicit CapsuleWindow(FloatingWindowSystem& system);

    TopCapsuleView& view() { return *m_view; }
    /// Where the capsule lies now, and where it is going.
    QRect frame() const;
    QRect target() const { return m_target; }
    /// Whether the point lies in the capsule's shape grown by this many points.
    bool covers(const QPoint& point, double distance) const;
    bool isMoving() const { return m_motion.isRunning(); }
    /// Whether it is nowhere to be seen until it is put somewhere again.
    bool isLost() const { return m_surface->isLost(); }
    bool isHeld() const { return m_heldAt.has_value(); }
    /// Whether the pointer has entered the capsule and not left it.
    bool hasPointer() const { return m_hasPointer; }
    /// The pointer has gone, although no event has told so.
    void losePointer() { setHasPointer(false); }

    /// Shows the window at once, fading the capsule in.
    void appear(const QRect& frame, double cornerRadius);
    /// Fades the capsule out and hides the window.
    void disappear();
    /// Fully opaque from now on, whatever fade was under way.
    void stay();
    /// Moves the capsule's edges there.
    void morphTo(const QRect& frame, double cornerRadius);
    /// Puts the capsule there without motion.
    void putAt(const QRect& frame, double cornerRadius);
    /// Moves the whole window so that the capsule, whose size stays, lies there.
    void moveTo(const QRect& frame);
    /// The same in motion.
    void glideTo(const QRect& frame);
    /// Counts the drag that is under way from here.
    void restartDrag();
    /// The compositor or its blur may have come or gone.
    void followSystem();

Q_SIGNALS:
    void hovered(bool isHovered);
    void pointerMoved();                  ///< inside, where its leaving may stay unseen
    void dragged(const QPoint& distance); ///< since the button was pressed
    void released();                      ///< after a drag

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool fades() const;
    void setHasPointer(bool hasPointer);
    bool isPointerUncertain() const;
    void followPointer(const QPoint& place);
    void fitWindow();
    void startMotion(const QRect& frame, double cornerRadius);
    void endMotion();
    void showStep(double share);
    void placeView(const QRect& frame);
    void updateShape();
    std::vector<FloatingWindowSystem::Rectangle> everythingOf(const QSize& size) const;
    std::vector<FloatingWindowSystem::Rectangle> shape(ShapeEdge edge) const;
    void updateBlur();
    void letGo();
    void letFall();

    FloatingWindowSystem& m_system;
    TopCapsuleView* m_view; // owned by this window
    std::unique_ptr<CapsuleSurface> m_surface;
    QEasingCurve m_curve;
    QRect m_start;
    QRect m_target;
    bool m_spansWay = false; // from start to target
    double m_cornerRadius = 0;
    bool m_isComposited = false;
    bool m_isBlurred = false;
    bool m_isDisappearing = false;
    bool m_hasPointer = false;
    bool m_isSensing = false;       // the margin is there
    std::optional<QPoint> m_heldAt; // where the pointer pressed
    QPoint m_pointer;               // where the mouse was last
    bool m_isDragging = false;
    ValueAnimation m_motion;
    ValueAnimation m_opacity;
};

} // namespace brevlin
