#include "ui/screens/about/about_row.h"

#include "ui/controls/card_surface.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QPainter>

namespace brevlin {

namespace {

constexpr double sidePadding = 15;
constexpr double spacing = 12;
constexpr double symbolColumn = 22;
constexpr double symbolSize = 18;
constexpr double arrowSize = 12;

// Only the corners that are the card's are round: the shape reaches past the row where it goes on.
QPainterPath rowShape(const QRectF& row, Qt::Edges cardEdges)
{
    const double beyond = 2 * CardSurface::cornerRadius;
    const QRectF shape =
        row.adjusted(0, cardEdges & Qt::TopEdge ? 0 : -beyond, 0, cardEdges & Qt::BottomEdge ? 0 : beyond);
    return continuousRoundedRect(shape, CardSurface::cornerRadius);
}

QRectF centredAt(double left, double width, double size, double height)
{
    return {left + (width - size) / 2, (height - size) / 2, size, size};
}

} // namespace

AboutRow::AboutRow(Symbol symbol, Qt::Edges cardEdges, QWidget* parent)
    : PlainButton(parent), m_symbol(symbol), m_cardEdges(cardEdges)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void AboutRow::setDetail(const QString& detail)
{
    m_detail = detail;
    setAccessibleDescription(detail);
    update();
}

void AboutRow::paintEvent(QPaintEvent*)
{
    const Theme theme = Theme::of(*this);
    const ControlState current = state();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (current == ControlState::hovered || current == ControlState::pressed) {
        painter.fillPath(rowShape(rect(), m_cardEdges),
                         theme.color(ThemeColor::label, current == ControlState::pressed ? 0.08 : 0.04));
    }
    const bool isDisabled = current == ControlState::disabled;
    paintSymbol(painter, m_symbol, centredAt(sidePadding, symbolColumn, symbolSize, height()),
                theme.color(isDisabled ? ThemeColor::tertiaryLabel : ThemeColor::focus));

    const double left = sidePadding + symbolColumn + spacing;
    const double arrowLeft = width() - sidePadding - arrowSize;
    painter.setFont(textFont(TextRole::body));
    painter.setPen(theme.color(isDisabled ? ThemeColor::tertiaryLabel : ThemeColor::label));
    drawTextOnBaseline(painter, {left, 0, arrowLeft - left, 1.0 * height()}, Qt::AlignLeft, text());
    painter.setFont(textFont(TextRole::caption));
    painter.setPen(theme.color(isDisabled ? ThemeColor::tertiaryLabel : ThemeColor::secondaryLabel));
    drawTextOnBaseline(painter, {left, 0, arrowLeft - spacing - left, 1.0 * height()}, Qt::AlignRight,
                       m_detail);
    paintSymbol(painter, Symbol::arrowUpRight, centredAt(arrowLeft, arrowSize, arrowSize, height()),
                theme.color(ThemeColor::tertiaryLabel));
    if (showsFocusRing())
        paintFocusRing(painter, QRectF(rect()).adjusted(2, 2, -2, -2), CardSurface::cornerRadius - 2, theme);
}

} // namespace brevlin
