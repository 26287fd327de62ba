#pragma once

#include <QColor>
#include <QPainterPath>
#include <QRectF>

class QPainter;

namespace brevlin {

/// How many device pixels a point has before the painter's own scaling; also right in QWidget::render, where
/// the painter's device is the widget and not the picture.
double pixelsPerPoint(const QPainter& painter);

/// The width of a hairline for this painter: half a point, but never less than one whole device pixel.
double hairlineWidth(const QPainter& painter);

/// A rule along the top or the bottom edge of `rect`, or a column along its left or right one, sharp at every
/// scale factor.
void paintHairline(QPainter& painter, const QRectF& rect, Qt::Edge edge, const QColor& color);

/// A hairline just inside the border of `outline`.
void paintHairlineInside(QPainter& painter, const QRectF& rect, double radius, const QColor& color);

/// A rounded rectangle whose corners begin to bend earlier and bend tighter in their middle than a circle's,
/// so that the eye sees no joint. A radius beyond what fits gives a plain capsule.
QPainterPath continuousRoundedRect(const QRectF& rect, double radius);

/// `rect` with round ends.
QPainterPath capsulePath(const QRectF& rect);

/// `rect` moved and stretched so that its edges lie on device pixels; as it is under a rotation.
QRectF alignedToPixels(const QPainter& painter, const QRectF& rect);

} // namespace brevlin
