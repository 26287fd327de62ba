#include "ui/controls/switch_control.h"

#include "ui/style/shapes.h"
#include "ui/style/theme.h"

#include <QPainter>

namespace brevlin {

namespace {

constexpr double knobInset = 2;
constexpr double knobStretch = 3; // of the pressed knob, towards where it will go

QColor trackColor(ControlState state, double position, const Theme& theme, const QColor& background)
{
    const double strength = state == ControlState::pressed   ? 0.3
                            : state == ControlState::hovered ? 0.24
                                                             : 0.19;
    QColor off = blended(theme.color(ThemeColor::label, strength), background);
    QColor on = theme.color(ThemeColor::focus);
    if (state == ControlState::pressed || state == ControlState::hovered) {
        QColor deepened = on;
        deepened.setAlphaF(state == ControlState::pressed ? 0.82F : 0.92F);
        on = blended(deepened, Qt::black);
    } else if (state == ControlState::disabled) {
        on = blended(theme.color(ThemeColor::focus, 0.4), background);
        off = blended(theme.color(ThemeColor::label, 0.1), background);
    }
    on.setAlphaF(static_cast<float>(position));
    return blended(on, off);
}

} // namespace

SwitchControl::SwitchControl(QWidget* parent) : PlainButton(parent), m_position(*this)
{
    setCheckable(true);
    connect(&m_position, &ValueAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(this, &QAbstractButton::toggled, this, [this](bool isOn) {
        m_position.animateTo(isOn ? 1 : 0, {std::chrono::milliseconds(160), QEasingCurve::OutCubic, 10});
    });
}

void SwitchControl::paintEvent(QPaintEvent*)
{
    const Theme theme = Theme::of(*this);
    const ControlState current = state();
    const double position = m_position.value();

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track =
        QRectF(rect()).adjusted(focusRingInset, focusRingInset, -focusRingInset, -focusRingInset);
    const QColor background = theme.color(ThemeColor::panelBackground);
    painter.fillPath(capsulePath(track), trackColor(current, position, theme, background));

    const double side = track.height() - 2 * knobInset;
    const double stretch = current == ControlState::pressed ? knobStretch : 0;
    const double travel = track.width() - 2 * knobInset - side - stretch;
    const QRectF knob(track.left() + knobInset + travel * position, track.top() + knobInset, side + stretch,
                      side);
    painter.fillPath(capsulePath(knob.translated(0, 0.75)), QColor(0, 0, 0, 38));
    QColor face = theme.color(ThemeColor::onFill);
    if (current == ControlState::disabled && theme.scheme() == ColorScheme::dark)
        face = blended(theme.color(ThemeColor::onFill, 0.55), background);
    painter.fillPath(capsulePath(knob), face);
    if (showsFocusRing())
        paintFocusRing(painter, rect(), rect().height() / 2.0, theme);
}

} // namespace brevlin
