#include "ui/capsule/capsule_border.h"

#include <algorithm>
#include <numbers>

namespace brevlin {

namespace {

/// Adds pieces of an outline until the wanted length is reached.
class TrimmedPath final
{
public:
    TrimmedPath(const QPointF& start, double length) : m_left(length) { m_path.moveTo(start); }

    void lineTo(const QPointF& end)
    {
        const QLineF line(m_path.currentPosition(), end);
        const double share = take(line.length());
        if (share > 0.0) {
            m_path.lineTo(line.pointAt(share));
        }
    }
    /// A clockwise half-circle; angles as QPainterPath counts them, counterclockwise from three o'clock.
    void halfCircle(const QPointF& center, double radius, double startAngle)
    {
        const double share = take(std::numbers::pi * radius);
        if (share > 0.0) {
            const QRectF circle(center.x() - radius, center.y() - radius, 2 * radius, 2 * radius);
            m_path.arcTo(circle, startAngle, -180.0 * share);
        }
    }
    const QPainterPath& path() const { return m_path; }

private:
    // The fraction of a piece of this length that is still wanted.
    double take(double length)
    {
        const double taken = std::clamp(m_left, 0.0, length);
        m_left -= taken;
        return length > 0.0 ? taken / length : 0.0;
    }

    QPainterPath m_path;
    double m_left;
};

} // namespace

QPainterPath capsuleBorderProgress(const QRectF& rect, double progress)
{
    if (!(progress > 0.0) || rect.width() <= 0.0 || rect.height() <= 0.0) {
        return {};
    }
    const double radius = std::min(rect.height(), rect.width()) / 2;
    const double straight = rect.width() - 2 * radius;
    const double length = 2 * straight + 2 * std::numbers::pi * radius;
    const double middle = rect.center().x();
    TrimmedPath outline({middle, rect.top()}, std::min(progress, 1.0) * length);
    outline.lineTo({rect.right() - radius, rect.top()});
    outline.halfCircle({rect.right() - radius, rect.center().y()}, radius, 90);
    outline.lineTo({rect.left() + radius, rect.bottom()});
    outline.halfCircle({rect.left() + radius, rect.center().y()}, radius, -90);
    outline.lineTo({middle, rect.top()});
    return outline.path();
}

} // namespace brevlin
