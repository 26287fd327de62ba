#pragma once

#include <QPainterPath>
#include <QRectF>

namespace brevlin {

/// The part (0 to 1) of a capsule's outline in the rectangle that has been passed clockwise from the top
/// centre. Empty for no progress and for an empty rectangle.
QPainterPath capsuleBorderProgress(const QRectF& rect, double progress);

} // namespace brevlin
