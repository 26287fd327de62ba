#include "ui/capsule/capsule_controls.h"

#include "ui/style/brevlin_mark.h"
#include "ui/style/focus_ring.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

constexpr int iconButtonSize = 27;
constexpr int textButtonSize = 28;
constexpr double symbolSize = 14;
constexpr int islandButtonHeight = 28;
constexpr double islandSymbolSize = 13;
constexpr double islandSymbolSpacing = 5;

QColor faded(QColor color, double factor)
{
    color.setAlphaF(color.alphaF() * static_cast<float>(factor));
    return color;
}

// Hovered controls are a touch stronger, pressed ones fainter.
double strength(ControlState state, double pressed)
{
    switch (state) {
    case ControlState::hovered:
        return 1.6;
    case ControlState::pressed:
        return pressed;
    default:
        return 1.0;
    }
}

QColor strengthened(QColor color, double factor)
{
    color.setAlphaF(std::min(color.alphaF() * static_cast<float>(factor), 1.0F));
    return color;
}

bool isInCircle(const QWidget& widget, const QPoint& position)
{
    const QPointF offset = position - QRectF(widget.rect()).center();
    const double radius = std::min(widget.width(), widget.height()) / 2.0;
    return offset.x() * offset.x() + offset.y() * offset.y() <= radius * radius;
}

} // namespace

CapsuleRoundButton::CapsuleRoundButton(Symbol symbol, const Colors& colors, QWidget* parent)
    : CapsuleRoundButton(symbol, QString(), colors, parent)
{}

CapsuleRoundButton::CapsuleRoundButton(const QString& shownText, const Colors& colors, QWidget* parent)
    : CapsuleRoundButton(Symbol::none, shownText, colors, parent)
{}

CapsuleRoundButton::CapsuleRoundButton(Symbol symbol, const QString& shownText, const Colors& colors,
                                       QWidget* parent)
    : PlainButton(parent), m_symbol(symbol), m_shownText(shownText), m_colors(colors)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::ArrowCursor);
}

QSize CapsuleRoundButton::sizeHint() const
{
    const int side = m_symbol == Symbol::none ? textButtonSize : iconButtonSize;
    return {side, side};
}

bool CapsuleRoundButton::hitButton(const QPoint& position) const
{
    return isInCircle(*this, position);
}

void CapsuleRoundButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(strengthened(m_colors.fill, strength(state(), 0.6)));
    painter.drawEllipse(rect());
    const QColor content =
        state() == ControlState::pressed ? faded(m_colors.content, 0.72) : m_colors.content;
    if (m_symbol != Symbol::none) {
        QRectF place(0, 0, symbolSize, symbolSize);
        place.moveCenter(QRectF(rect()).center());
        paintSymbol(painter, m_symbol, place, content);
    } else {
        painter.setFont(textFont(TextRole::smallCaption, QFont::DemiBold));
        painter.setPen(content);
        drawTextOnBaseline(painter, rect(), Qt::AlignHCenter, m_shownText);
    }
    if (showsFocusRing()) {
        paintFocusRing(painter, rect(), height() / 2.0, Theme::of(*this));
    }
}

IslandButton::Look IslandButton::secondaryLook(const QColor& fill, const QColor& content)
{
    return {fill, content, QFont::Medium, 11, 0.65, 0.72};
}

IslandButton::Look IslandButton::primaryLook(const QColor& tint)
{
    return {tint, QColor::fromRgbF(0, 0, 0, 0.86F), QFont::DemiBold, 13, 0.72, 1.0};
}

IslandButton::IslandButton(const QString& text, Symbol symbol, const Look& look, QWidget* parent)
    : PlainButton(parent), m_symbol(symbol), m_look(look)
{
    setText(text);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::ArrowCursor);
}

QSize IslandButton::sizeHint() const
{
    const QFontMetricsF metrics(textFont(TextRole::caption, m_look.weight));
    const double symbol = m_symbol == Symbol::none ? 0.0 : islandSymbolSize + islandSymbolSpacing;
    return {static_cast<int>(std::ceil(metrics.horizontalAdvance(text()) + symbol + 2 * m_look.padding)),
            islandButtonHeight};
}

void IslandButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isOpaque = m_look.fill.alpha() == 255;
    QColor fill = state() == ControlState::pressed ? faded(m_look.fill, m_look.pressedFill) : m_look.fill;
    if (state() == ControlState::hovered) {
        fill = isOpaque ? fill.lighter(112) : strengthened(fill, 1.5);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawPath(capsulePath(rect()));
    const QColor content =
        state() == ControlState::pressed ? faded(m_look.content, m_look.pressedContent) : m_look.content;
    QRectF place = QRectF(rect()).adjusted(m_look.padding, 0, -m_look.padding, 0);
    if (m_symbol != Symbol::none) {
        const QRectF symbol(place.left(), (height() - islandSymbolSize) / 2, islandSymbolSize,
                            islandSymbolSize);
        paintSymbol(painter, m_symbol, symbol, content);
        place.setLeft(symbol.right() + islandSymbolSpacing);
    }
    painter.setFont(textFont(TextRole::caption, m_look.weight));
    painter.setPen(content);
    drawTextOnBaseline(painter, place, Qt::AlignHCenter, text());
    if (showsFocusRing()) {
        paintFocusRing(painter, rect(), height() / 2.0, Theme::of(*this));
    }
}

MinimizedCompletionButton::MinimizedCompletionButton(TimerPhase phase, QWidget* parent)
    : PlainButton(parent), m_phase(phase)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

bool MinimizedCompletionButton::hitButton(const QPoint& position) const
{
    return isInCircle(*this, position);
}

// The events go on to the window, which follows a drag; the press then was no click.
void MinimizedCompletionButton::mousePressEvent(QMouseEvent* event)
{
    m_pressedAt = event->globalPosition().toPoint();
    PlainButton::mousePressEvent(event);
    event->ignore();
}

void MinimizedCompletionButton::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint distance = event->globalPosition().toPoint() - m_pressedAt;
    if (isDown() && distance.manhattanLength() > capsuleDragThreshold) {
        setDown(false);
    }
    event->ignore();
}

void MinimizedCompletionButton::mouseReleaseEvent(QMouseEvent* event)
{
    PlainButton::mouseReleaseEvent(event);
    event->ignore();
}

void MinimizedCompletionButton::paintEvent(QPaintEvent* /*event*/)
{
    constexpr double iconSize = 24;
    constexpr double hoveredScale = 1.08;
    constexpr double pressedScale = 0.94;
    double size = iconSize;
    if (state() == ControlState::hovered) {
        size *= hoveredScale;
    } else if (state() == ControlState::pressed) {
        size *= pressedScale;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF place(0, 0, size, size);
    place.moveCenter(QRectF(rect()).center());
    paintPhaseIcon(painter, place, m_phase, Theme::of(*this));
    if (showsFocusRing()) {
        paintFocusRing(painter, rect(), height() / 2.0, Theme::of(*this));
    }
}

} // namespace brevlin
