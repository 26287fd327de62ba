#pragma once

#include "platform/floating_window_system.h"
#include "ui/capsule/capsule_placement.h"

#include <QRect>
#include <QString>

namespace brevlin {

// Between Qt's screens, whose y runs downwards from the top left, and the coordinates of the capsule's
// arithmetic, whose y runs upwards from the bottom left of the primary screen.

/// What identifies a monitor.
struct ScreenIdentity
{
    QString manufacturer;
    QString model;
    QString serialNumber;
    QString connector;
};

/// A screen as Qt and the window system know it.
struct ScreenFacts
{
    ScreenIdentity identity;
    QRect geometry;          ///< points
    QRect availableGeometry; ///< points
    double scale = 1;        ///< native pixels a point
};

/// Numbers that stay the same for a monitor across restarts and ports: made of its make, model and serial
/// number, or of its connector's name where those do not tell it from all others.
std::vector<std::uint32_t> displayNumbers(const std::vector<ScreenIdentity>& screens);

/// The part of a screen that no panel of the desktop takes. Panels that lie on another screen are left out:
/// they are measured from the desktop's edge and so seem to cover all that is between.
QRect visibleGeometry(const ScreenFacts& screen,
                      const std::vector<FloatingWindowSystem::ReservedArea>& reservedAreas);

/// The screens, the first of which is the primary one.
CapsuleScreens capsuleScreens(const std::vector<ScreenFacts>& screens,
                              const std::vector<FloatingWindowSystem::ReservedArea>& reservedAreas);
/// The same of the running application.
CapsuleScreens currentCapsuleScreens(const FloatingWindowSystem& system);

/// In Qt's coordinates on whole points; `primary` is the primary screen's geometry.
QRect toQt(const CapsuleFrame& frame, const QRect& primary);
CapsuleFrame fromQt(const QRect& rect, const QRect& primary);

} // namespace brevlin
