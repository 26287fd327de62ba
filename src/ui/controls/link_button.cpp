#include "ui/controls/link_button.h"

#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace brevlin {

namespace {

constexpr int padding = 7;
constexpr int buttonHeight = 26;
constexpr double radius = 7;

QFont linkFont()
{
    return textFont(TextRole::callout, QFont::Medium);
}

} // namespace

LinkButton::LinkButton(QWidget* parent) : PlainButton(parent)
{
    setCursor(Qt::PointingHandCursor);
}

QSize LinkButton::sizeHint() const
{
    return {static_cast<int>(std::ceil(QFontMetricsF(linkFont()).horizontalAdvance(text()))) + 2 * padding,
            buttonHeight};
}

void LinkButton::paintEvent(QPaintEvent*)
{
    const Theme theme = Theme::of(*this);
    const ControlState current = state();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (current == ControlState::hovered || current == ControlState::pressed) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.color(ThemeColor::focus, current == ControlState::pressed ? 0.14 : 0.07));
        painter.drawRoundedRect(rect(), radius, radius);
    }
    painter.setFont(linkFont());
    painter.setPen(
        theme.color(current == ControlState::disabled ? ThemeColor::tertiaryLabel : ThemeColor::focusText));
    drawTextOnBaseline(painter, rect(), Qt::AlignHCenter, text());
    if (showsFocusRing())
        paintFocusRing(painter, rect(), radius, theme);
}

} // namespace brevlin
