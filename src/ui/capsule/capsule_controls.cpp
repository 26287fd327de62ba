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

bool isInCircle(const QWidget& widget, const QPoint& position)
{
    const QPointF offset = position - QRectF(widget.rect()).center();
    const double radius = std::min(widget.width(), widget.height()) / 2.0;
    return offset.x() * offset.x() + offset.y() * offset.y() <= radius * radius;
}

} // namespace

CapsuleRoundButton::CapsuleRoundButton(Symbol symbol, const CapsuleButtonLook& look, QWidget* parent)
    : CapsuleRoundButton(symbol, QString(), look, parent)
{}

CapsuleRoundButton::CapsuleRoundButton(const QString& shownText, const CapsuleButtonLook& look,
                                       QWidget* parent)
    : CapsuleRoundButton(Symbol::none, shownText, look, parent)
{}

CapsuleRoundButton::CapsuleRoundButton(Symbol symbol, const QString& shownText, const CapsuleButtonLook& look,
                                       QWidget* parent)
    : PlainButton(parent), m_symbol(symbol), m_shownText(shownText), m_look(look)
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
    const auto& [fill, content] = m_look.in(state());
    painter.setBrush(fill);
    painter.drawEllipse(rect());
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

IslandButton::IslandButton(const QString& text, Symbol symbol, Rank rank, const CapsuleButtonLook& look,
                           QWidget* parent)
    : PlainButton(parent), m_symbol(symbol), m_rank(rank), m_look(look)
{
    setText(text);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::ArrowCursor);
}

QFont IslandButton::labelFont() const
{
    return textFont(TextRole::caption, m_rank == Rank::primary ? QFont::DemiBold : QFont::Medium);
}

// At both sides.
int IslandButton::padding() const
{
    return m_rank == Rank::primary ? 13 : 11;
}

QSize IslandButton::sizeHint() const
{
    const QFontMetricsF metrics(labelFont());
    const double symbol = m_symbol == Symbol::none ? 0.0 : islandSymbolSize + islandSymbolSpacing;
    return {static_cast<int>(std::ceil(metrics.horizontalAdvance(text()) + symbol)) + 2 * padding(),
            islandButtonHeight};
}

void IslandButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto& [fill, content] = m_look.in(state());
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawPath(capsulePath(rect()));
    QRectF place = QRectF(rect()).adjusted(padding(), 0, -padding(), 0);
    if (m_symbol != Symbol::none) {
        const QRectF symbol(place.left(), (height() - islandSymbolSize) / 2, islandSymbolSize,
                            islandSymbolSize);
        paintSymbol(painter, m_symbol, symbol, content);
        place.setLeft(symbol.right() + islandSymbolSpacing);
    }
    painter.setFont(labelFont());
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
