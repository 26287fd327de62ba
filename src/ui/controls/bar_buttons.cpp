#include "ui/controls/bar_buttons.h"

#include "ui/style/brevlin_mark.h"
#include "ui/style/symbol.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace brevlin {

namespace {

constexpr double tabTextSize = 14;
constexpr int tabPadding = 13;
constexpr int tabHeight = 32;
constexpr double tabRadius = 9;
constexpr double logoSize = 30;
constexpr double discSize = 14;
constexpr double discSymbolSize = 11;

QColor tabColor(const SectionTab& tab, const Theme& theme)
{
    switch (tab.state()) {
    case ControlState::disabled:
        return theme.color(ThemeColor::quaternaryLabel);
    case ControlState::pressed:
        return theme.color(tab.isSelected() ? ThemeColor::focusText : ThemeColor::label);
    case ControlState::hovered:
        return tab.isSelected() ? theme.color(ThemeColor::focusText) : theme.color(ThemeColor::label, 0.9);
    case ControlState::normal:
        break;
    }
    return theme.color(tab.isSelected() ? ThemeColor::focusText : ThemeColor::secondaryLabel);
}

QRectF centred(const QRectF& bounds, double size)
{
    return {bounds.center().x() - size / 2, bounds.center().y() - size / 2, size, size};
}

Symbol symbolOf(WindowButton::Kind kind)
{
    switch (kind) {
    case WindowButton::Kind::close:
        return Symbol::xmark;
    case WindowButton::Kind::minimize:
        return Symbol::minus;
    case WindowButton::Kind::maximize:
        return Symbol::arrowUpLeftAndArrowDownRight;
    case WindowButton::Kind::restore:
        return Symbol::arrowDownRightAndArrowUpLeft;
    }
    return Symbol::none;
}

} // namespace

SectionTab::SectionTab(QWidget* parent) : SelectableButton(parent) {}

QSize SectionTab::sizeHint() const
{
    const QFontMetricsF metrics(systemFont(tabTextSize, QFont::DemiBold));
    return {static_cast<int>(std::ceil(metrics.horizontalAdvance(text()))) + 2 * tabPadding, tabHeight};
}

void SectionTab::paintEvent(QPaintEvent*)
{
    const Theme theme = Theme::of(*this);
    QPainter painter(this);
    painter.setFont(systemFont(tabTextSize, isSelected() ? QFont::DemiBold : QFont::Medium));
    painter.setPen(tabColor(*this, theme));
    drawTextOnBaseline(painter, rect(), Qt::AlignHCenter, text());
    if (showsFocusRing())
        paintFocusRing(painter, rect(), tabRadius, theme);
}

LogoButton::LogoButton(QWidget* parent) : SelectableButton(parent) {}

void LogoButton::paintEvent(QPaintEvent*)
{
    const Theme theme = Theme::of(*this);
    QPainter painter(this);
    if (state() == ControlState::disabled)
        painter.setOpacity(0.4);
    else if (state() == ControlState::pressed)
        painter.setOpacity(0.7);
    if (state() == ControlState::hovered || isSelected()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.color(ThemeColor::label, isSelected() ? 0.075 : 0.055));
        painter.drawRoundedRect(rect(), tabRadius, tabRadius);
    }
    paintBrevlinLogo(painter, centred(rect(), logoSize), theme);
    if (showsFocusRing())
        paintFocusRing(painter, rect(), tabRadius, theme);
}

WindowButton::WindowButton(Kind kind, QWidget* parent) : PlainButton(parent), m_kind(kind) {}

void WindowButton::setKind(Kind kind)
{
    m_kind = kind;
    update();
}

bool WindowButton::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate) {
        update();
    }
    return PlainButton::event(event);
}

void WindowButton::paintEvent(QPaintEvent*)
{
    const Theme theme = Theme::of(*this);
    const ControlState current = state();
    const bool isQuiet =
        current == ControlState::disabled || (!isActiveWindow() && current == ControlState::normal);
    const bool isPointedAt = current == ControlState::hovered || current == ControlState::pressed;

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF disc = centred(rect(), discSize);
    const double strength = current == ControlState::pressed ? 0.22
                            : isPointedAt                    ? 0.15
                            : isQuiet                        ? 0.055
                                                             : 0.09;
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.color(ThemeColor::label, strength));
    painter.drawEllipse(disc);

    // The discs have one colour, so each keeps its symbol: faint at rest, full under the pointer.
    const ThemeColor ink = isPointedAt || showsFocusRing()     ? ThemeColor::label
                           : current == ControlState::disabled ? ThemeColor::quaternaryLabel
                           : isQuiet                           ? ThemeColor::tertiaryLabel
                                                               : ThemeColor::secondaryLabel;
    paintSymbol(painter, symbolOf(m_kind), centred(rect(), discSymbolSize), theme.color(ink));
    if (showsFocusRing())
        paintFocusRing(painter, rect(), rect().height() / 2.0, theme);
}

} // namespace brevlin
