#include "ui/controls/symbol_button.h"

#include "ui/style/shapes.h"
#include "ui/style/theme.h"

#include <QPainter>

namespace brevlin {

SymbolButton::SymbolButton(Symbol symbol, QWidget* parent) : PlainButton(parent), m_symbol(symbol) {}

void SymbolButton::paintEvent(QPaintEvent* /*event*/)
{
    constexpr double radius = 7;
    constexpr double symbolSize = 16;
    constexpr double disabledOpacity = 0.28;
    const Theme theme = Theme::of(*this);
    const ControlState current = state();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (current == ControlState::hovered || current == ControlState::pressed) {
        painter.fillPath(continuousRoundedRect(rect(), radius),
                         theme.color(ThemeColor::label, current == ControlState::pressed ? 0.1 : 0.055));
    }
    const QRectF symbol((width() - symbolSize) / 2, (height() - symbolSize) / 2, symbolSize, symbolSize);
    paintSymbol(painter, m_symbol, symbol,
                theme.color(ThemeColor::label, current == ControlState::disabled ? disabledOpacity : 1));
    if (showsFocusRing()) {
        paintFocusRing(painter, rect(), radius, theme);
    }
}

} // namespace brevlin
