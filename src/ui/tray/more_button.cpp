#include "ui/tray/more_button.h"

#include "ui/style/symbol.h"
#include "ui/style/theme.h"

#include <QPainter>

namespace brevlin {

namespace {

constexpr double symbolSize = 18; // whose dots are as large as those of a text of 15 points
constexpr double radius = 7;

} // namespace

void MoreButton::paintEvent(QPaintEvent* /*event*/)
{
    const Theme theme = Theme::of(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const ControlState current = state();
    if (current == ControlState::hovered || current == ControlState::pressed) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.color(ThemeColor::label, current == ControlState::pressed ? 0.11 : 0.055));
        painter.drawRoundedRect(rect(), radius, radius);
    }
    const QRectF square((width() - symbolSize) / 2, (height() - symbolSize) / 2, symbolSize, symbolSize);
    const ThemeColor ink = current == ControlState::disabled ? ThemeColor::quaternaryLabel
                           : current == ControlState::normal ? ThemeColor::secondaryLabel
                                                             : ThemeColor::label;
    paintSymbol(painter, Symbol::ellipsis, square, theme.color(ink));
    if (showsFocusRing()) {
        paintFocusRing(painter, rect(), radius, theme);
    }
}

} // namespace brevlin
