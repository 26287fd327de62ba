#include "ui/style/shapes.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace brevlin {

double pixelsPerPoint(const QPainter& painter)
{
    const double own = std::abs(painter.worldTransform().determinant());
    return own > 0 ? std::sqrt(std::abs(painter.deviceTransform().determinant()) / own) : 1;
}

double hairlineWidth(const QPainter& painter)
{
    const double ratio = pixelsPerPoint(painter);
    return std::max(1.0, std::round(0.5 * ratio)) / ratio;
}

void paintHairline(QPainter& painter, const QRectF& rect, Qt::Edge edge, const QColor& color)
{
    const double width = hairlineWidth(painter);
    QRectF line = alignedToPixels(painter, rect);
    switch (edge) {
    case Qt::TopEdge:
        line.setHeight(width);
        break;
    case Qt::BottomEdge:
        line.setTop(line.bottom() - width);
        break;
    case Qt::LeftEdge:
        line.setWidth(width);
        break;
    case Qt::RightEdge:
        line.setLeft(line.right() - width);
        break;
    }
    painter.fillRect(line, color);
}

void paintHairlineInside(QPainter& painter, const QRectF& rect, double radius, const QColor& color)
{
    const double width = hairlineWidth(painter);
    const QRectF outer = alignedToPixels(painter, rect);
    QPainterPath frame = continuousRoundedRect(outer, radius);
    frame.addPath(continuousRoundedRect(outer.adjusted(width, width, -width, -width), radius - width));
    frame.setFillRule(Qt::OddEvenFill);
    painter.fillPath(frame, color);
}

QPainterPath continuousRoundedRect(const QRectF& rect, double radius)
{
    // One cubic a corner, from 1.3 radii before it to 1.3 after, through the middle of the circle's arc:
    // that middle lies (1 - 1/sqrt 2) radii from either side, which fixes the length of the handles.
    const double reach = 1.3 * radius;
    if (radius <= 0 || 2 * reach > std::min(rect.width(), rect.height())) {
        QPainterPath path;
        const double fitting = std::clamp(radius, 0.0, std::min(rect.width(), rect.height()) / 2);
        path.addRoundedRect(rect, fitting, fitting);
        return path;
    }
    const double handle = (4 * reach - 8 * radius * (1 - M_SQRT1_2)) / 3;
    const double near = reach - handle;

    const auto [left, top, right, bottom] = std::array{rect.left(), rect.top(), rect.right(), rect.bottom()};
    QPainterPath path(QPointF(left + reach, top));
    path.lineTo(right - reach, top);
    path.cubicTo(right - near, top, right, top + near, right, top + reach);
    path.lineTo(right, bottom - reach);
    path.cubicTo(right, bottom - near, right - near, bottom, right - reach, bottom);
    path.lineTo(left + reach, bottom);
    path.cubicTo(left + near, bottom, left, bottom - near, left, bottom - reach);
    path.lineTo(left, top + reach);
    path.cubicTo(left, top + near, left + near, top, left + reach, top);
    path.closeSubpath();
    return path;
}

QPainterPath capsulePath(const QRectF& rect)
{
    QPainterPath path;
    const double radius = std::min(rect.width(), rect.height()) / 2;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

QRectF alignedToPixels(const QPainter& painter, const QRectF& rect)
{
    const QTransform toDevice = painter.deviceTransform();
    if (toDevice.type() > QTransform::TxScale)
        return rect;
    const QRectF device = toDevice.mapRect(rect);
    const QPointF topLeft(std::round(device.left()), std::round(device.top()));
    const QPointF bottomRight(std::round(device.right()), std::round(device.bottom()));
    return toDevice.inverted().mapRect(QRectF(topLeft, bottomRight));
}

} // namespace brevlin
