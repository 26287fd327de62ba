#include "ui/style/focus_ring.h"

#include "ui/style/theme.h"

#include <QFocusEvent>
#include <QPainter>

#include <algorithm>

namespace brevlin {

namespace {
constexpr double ringWidth = 2;
}

void paintFocusRing(QPainter& painter, const QRectF& bounds, double radius, const Theme& theme)
{
    const double half = ringWidth / 2;
    const QRectF line = bounds.adjusted(half, half, -half, -half);
    const double fitting = std::min({radius, bounds.width() / 2, bounds.height() / 2}) - half;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.color(ThemeColor::focusRing), ringWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(line, fitting, fitting);
    painter.restore();
}

void KeyboardFocus::focusGained(const QFocusEvent& event)
{
    switch (event.reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        m_isShown = true;
        break;
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
        m_isShown = m_returnsWithWindow;
        break;
    default:
        m_isShown = false;
        break;
    }
}

void KeyboardFocus::focusLost(const QFocusEvent& event)
{
    const bool comesBack =
        event.reason() == Qt::ActiveWindowFocusReason || event.reason() == Qt::PopupFocusReason;
    m_returnsWithWindow = comesBack && m_isShown;
    m_isShown = false;
}

} // namespace brevlin
