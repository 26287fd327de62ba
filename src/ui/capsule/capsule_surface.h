#pragma once

#include "platform/floating_window_system.h"

#include <QRect>

#include <memory>

class QWidget;

namespace brevlin {

/// The ground of the capsule's window: where it lies, how it gets elsewhere and how it fades, which is
/// different work where windows place themselves and where the desktop lays them. All rectangles are points
/// of the desktop.
class CapsuleSurface
{
public:
    virtual ~CapsuleSurface() = default;

    /// To be called before every time that the window is placed and shown.
    virtual void prepare() = 0;
    /// Shows the window above all others.
    virtual void show() = 0;
    virtual QRect area() const = 0;
    /// Gives the window an area that holds this one. False where it keeps the one that it has. What it shows
    /// has to be put right and painted at once.
    virtual bool hold(const QRect& area) = 0;
    /// Takes the window, and what it shows, along.
    virtual void moveBy(const QPoint& way) = 0;
    /// Whether there is a way from one place to the other on which the capsule is seen.
    virtual bool connects(const QRect& from, const QRect& to) const = 0;
    /// Of the whole window.
    virtual void setOpacity(double opacity) = 0;
    /// What is clicked while the capsule is on its way through this part of the window; nothing for all of
    /// it.
    virtual std::optional<QRect> clickedOnTheWay(const QRect& way) const = 0;
    /// What the window system was asked for in between is to count now.
    virtual void takeEffect() = 0;
    /// Whether the window is nowhere to be seen although it is shown, until it is placed again.
    virtual bool isLost() const = 0;

    /// The capsule is taken into the hand, and follows it by moveBy().
    virtual void lift() = 0;
    /// It has been let go; nothing happens where it was not lifted.
    virtual void drop() = 0;
};

/// For a window whose child `view` is all that it shows.
std::unique_ptr<CapsuleSurface> makeCapsuleSurface(QWidget& window, QWidget& view,
                                                   FloatingWindowSystem& system);

/// In native pixels of the window's screen.
FloatingWindowSystem::Rectangle nativeRectangle(const QRect& rect, const QWidget& window);

} // namespace brevlin
