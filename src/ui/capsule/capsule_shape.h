#pragma once

#include <QRegion>
#include <QSize>

namespace brevlin {

enum class ShapeEdge {
    soft, ///< every pixel that the shape touches: a compositor blends those at the edge
    hard, ///< the pixels that the shape covers by at least a half
};

/// The pixels of a rounded rectangle of this size.
QRegion roundedRegion(const QSize& size, double cornerRadius, ShapeEdge edge);

} // namespace brevlin
