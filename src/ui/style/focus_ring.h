#pragma once

#include <QRectF>

class QFocusEvent;
class QPainter;

namespace brevlin {

class Theme;

/// How far a control's own shape withdraws from its bounds while the ring lies around it: the ring and a gap
/// that keeps it readable on every fill. The ring stays inside the bounds, so that no parent clips it.
constexpr double focusRingInset = 3.5;

/// The ring just inside `bounds`. A radius of half the height makes it a capsule.
void paintFocusRing(QPainter& painter, const QRectF& bounds, double radius, const Theme& theme);

/// Whether a control shows its ring: only while focus that came by the keyboard stays.
class KeyboardFocus final
{
public:
    bool isShown() const { return m_isShown; }
    void focusGained(const QFocusEvent& event);
    void focusLost(const QFocusEvent& event);

private:
    bool m_isShown = false;
    bool m_returnsWithWindow = false;
};

} // namespace brevlin
