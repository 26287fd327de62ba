#include "ui/main/window_frame.h"

#include "platform/window_system.h"
#include "ui/style/shapes.h"
#include "ui/style/theme.h"

#include <QApplication>
#include <QHoverEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>
#include <QWindow>

#include <cmath>

namespace brevlin {

namespace {

constexpr int shadowMargin = 24;
constexpr int hairlineMargin = 1;
// How far into the window its edge can be taken hold of, where no shadow lies outside.
constexpr int innerGrip = 5;
constexpr int cornerGrip = 14;

Qt::CursorShape cursorFor(Qt::Edges edges)
{
    if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge)) {
        return Qt::SizeFDiagCursor;
    }
    if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge)) {
        return Qt::SizeBDiagCursor;
    }
    return edges & (Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

bool isPointerEvent(QEvent::Type type)
{
    return type == QEvent::MouseButtonPress || type == QEvent::MouseMove;
}

} // namespace

WindowFrame::WindowFrame(QWidget& window, WindowSystem& windowSystem)
    : QObject(&window), m_window(window), m_windowSystem(windowSystem)
{
    // On the application: the pointer over the edge is over some child of the window.
    qApp->installEventFilter(this);
    m_windowSystem.setSupportChangeHandler([this] { refresh(); });
}

void WindowFrame::refresh()
{
    const bool fillsScreen = m_window.isMaximized() || m_window.isFullScreen();
    m_hasShadow = !fillsScreen && m_windowSystem.supportsShadowMargins();
    const int width = fillsScreen ? 0 : m_hasShadow ? shadowMargin : hairlineMargin;
    const QMargins margins(width, width, width, width);
    publishMargins();
    if (margins != m_margins) {
        m_margins = margins;
        publishMargins();
        Q_EMIT marginsChanged();
    }
    m_window.update();
}

void WindowFrame::publishMargins() const
{
    if (m_window.windowHandle() == nullptr) {
        return;
    }
    const auto native = [this](int length) {
        return static_cast<std::uint32_t>(
            std::lround(m_hasShadow ? length * m_window.devicePixelRatioF() : 0.0));
    };
    m_windowSystem.setShadowMargins(m_window.winId(), {native(m_margins.left()), native(m_margins.right()),
                                                       native(m_margins.top()), native(m_margins.bottom())});
}

bool WindowFrame::canResize() const
{
    return !m_window.isMaximized() && !m_window.isFullScreen();
}

Qt::Edges WindowFrame::edgesAt(const QPoint& position) const
{
    const QRect content = m_window.rect().marginsRemoved(m_margins);
    const QRect grip = content.adjusted(innerGrip, innerGrip, -innerGrip, -innerGrip);
    if (!canResize() || grip.contains(position)) {
        return {};
    }
    Qt::Edges edges;
    const auto nearTo = [](int value, int edge) {
        return std::abs(value - edge) <= cornerGrip;
    };
    if (position.x() < grip.left() || (nearTo(position.x(), content.left()))) {
        edges |= Qt::LeftEdge;
    } else if (position.x() > grip.right() || nearTo(position.x(), content.right())) {
        edges |= Qt::RightEdge;
    }
    if (position.y() < grip.top() || nearTo(position.y(), content.top())) {
        edges |= Qt::TopEdge;
    } else if (position.y() > grip.bottom() || nearTo(position.y(), content.bottom())) {
        edges |= Qt::BottomEdge;
    }
    return edges;
}

bool WindowFrame::eventFilter(QObject* watched, QEvent* event)
{
    if (!isPointerEvent(event->type()) || watched != m_window.windowHandle()) {
        return QObject::eventFilter(watched, event);
    }
    const auto* mouse = static_cast<QMouseEvent*>(event);
    const Qt::Edges edges = mouse->buttons() == Qt::NoButton || event->type() == QEvent::MouseButtonPress
                                ? edgesAt(mouse->position().toPoint())
                                : Qt::Edges{};
    if (event->type() == QEvent::MouseMove) {
        if (edges != m_hoveredEdges) {
            m_hoveredEdges = edges;
            if (edges) {
                m_window.windowHandle()->setCursor(cursorFor(edges));
            } else {
                m_window.windowHandle()->unsetCursor();
            }
        }
        return QObject::eventFilter(watched, event);
    }
    if (edges && mouse->button() == Qt::LeftButton) {
        m_window.windowHandle()->startSystemResize(edges);
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void WindowFrame::paint(QPainter& painter) const
{
    const Theme theme = Theme::of(m_window);
    if (m_hasShadow) {
        paintShadow(painter);
    } else if (!m_margins.isNull()) {
        painter.fillRect(m_window.rect(), blended(theme.color(ThemeColor::quaternaryLabel),
                                                  theme.color(ThemeColor::windowBackground)));
    }
}

void WindowFrame::paintShadow(QPainter& painter) const
{
    // Layers of faint outlines add up to a soft edge, darker where the window looks active.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double strength = m_window.isActiveWindow() ? 1.0 : 0.6;
    const QRectF content = QRectF(m_window.rect().marginsRemoved(m_margins)).translated(0, 3);
    constexpr int reach = shadowMargin - 4;
    for (int distance = reach; distance >= 0; --distance) {
        const double nearness = 1.0 - static_cast<double>(distance) / reach;
        painter.setBrush(
            QColor(0, 0, 0, static_cast<int>(std::lround(strength * (1.0 + 2.5 * nearness * nearness)))));
        const double radius = cornerRadius + distance;
        painter.drawRoundedRect(content.adjusted(-distance, -distance, distance, distance), radius, radius);
    }
    QColor rim = Theme::of(m_window).color(ThemeColor::label, 0.16);
    painter.setBrush(rim);
    const QRectF edge = QRectF(m_window.rect().marginsRemoved(m_margins)).adjusted(-1, -1, 1, 1);
    painter.drawRoundedRect(edge, cornerRadius + 1, cornerRadius + 1);
}

} // namespace brevlin
