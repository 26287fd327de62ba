#pragma once

#include "storage/main_window_store.h"

#include <QRect>
#include <QSize>

#include <optional>
#include <vector>

class QScreen;

namespace brevlin {

class FloatingWindowSystem;

/// The part of a screen that no panel of the desktop takes, points.
QRect workArea(const QScreen& screen, const FloatingWindowSystem& floatingWindows);
/// Of all screens, the primary one first; empty where there is none.
std::vector<QRect> workAreas(const FloatingWindowSystem& floatingWindows);

/// Where a window goes that looked like this when it was last closed: wholly inside of the work area that it
/// overlaps most, and in the centre of the first one while it has no place of its own. Never larger than that
/// area, but at least `least` where it has the room.
QRect placedInside(const WindowGeometry& wanted, const QSize& least, const std::vector<QRect>& workAreas);
/// The place to remember for this rectangle: none while it stands where nobody has moved it from.
std::optional<WindowPlace> placeToRemember(const QRect& rect, const std::vector<QRect>& workAreas);
/// The least size that fits every screen; `least` where all are large enough.
QSize leastSizeOn(const std::vector<QRect>& workAreas, const QSize& least);

} // namespace brevlin
