#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace brevlin {

/// Where a panel of this size lies that belongs to a status item at `anchor`: beside it, towards the middle
/// of the screen from the nearest edge, and wholly inside `workArea`. Where the panel is larger than that,
/// its top left corner is inside.
QPoint panelOrigin(const QPoint& anchor, const QSize& size, const QRect& screen, const QRect& workArea);

} // namespace brevlin
