#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace brevlin {

/// Where a panel of this size lies that belongs to a status item at `wanted`: beside it, towards the middle
/// of the screen from the nearest edge, and wholly inside `workArea`. Where the panel is larger than that,
/// its top left corner is inside. A place beyond the screen, which is not empty, counts as the nearest on it.
QPoint panelOrigin(const QPoint& wanted, const QSize& size, const QRect& screen, const QRect& workArea);

/// Where the status item is likely to be on this screen, for hosts that do not tell: on the bar that the
/// pointer is nearest to, abreast of it; without a pointer at the end of a bar, where status icons stand. A
/// screen of which no bar is known is taken for one with a bar along the top.
QPoint likelyAnchor(const QRect& screen, const QRect& workArea, const std::optional<QPoint>& pointer);
/// Whether a host that may not know where it is can mean this point: it lies on a bar or, as far as none is
/// known, at an edge of the screen, and not where every place on an icon of its own would lie.
bool canBeOnBar(const QPoint& point, const QRect& screen, const QRect& workArea);

} // namespace brevlin
