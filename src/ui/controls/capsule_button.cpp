#include "ui/controls/capsule_button.h"

#include "ui/style/animation.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

struct CapsuleMetrics
{
    double textSize;
    int horizontalPadding;
    int minimumHeight;
    int symbolSize;
    int symbolGap;
};

constexpr CapsuleMetrics metricsOf(ControlSize size)
{
    return size == ControlSize::compact ? CapsuleMetrics{11.5, 8, 30, 14, 3}
                                        : CapsuleMetrics{13, 15, 36, 16, 4};
}

// A symbol's ink keeps about this distance from the sides of its square; the text column allows for it, so
// that symbol and text together stand in the middle.
constexpr double symbolBearing = 2;
constexpr double pressedScale = 0.98;

QFont labelFont(CapsuleStyle style, ControlSize size)
{
    return systemFont(metricsOf(size).textSize,
                      style == CapsuleStyle::primary ? QFont::DemiBold : QFont::Medium, FontDesign::rounded);
}

QColor mixed(const QColor& from, const QColor& to, double share)
{
    const auto mix = [share](float a, float b) {
        return static_cast<float>(a + (b - a) * share);
    };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()), mix(from.alphaF(), to.alphaF()));
}

} // namespace

CapsuleButton::CapsuleButton(CapsuleStyle style, ControlSize size, QWidget* parent)
    : PlainButton(parent), m_style(style), m_size(size), m_press(*this)
{
    connect(&m_press, &ValueAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(this, &QAbstractButton::pressed, this, [this] { animatePress(true); });
    connect(this, &QAbstractButton::released, this, [this] { animatePress(false); });
}

void CapsuleButton::setTint(ThemeColor tint)
{
    m_tint = tint;
    update();
}

void CapsuleButton::setStyle(CapsuleStyle style)
{
    m_style = style;
    updateGeometry();
    update();
}

void CapsuleButton::setSymbol(Symbol symbol)
{
    m_symbol = symbol;
    updateGeometry();
    update();
}

QSize CapsuleButton::sizeHint() const
{
    const CapsuleMetrics metrics = metricsOf(m_size);
    const QFontMetricsF text(labelFont(m_style, m_size));
    return {static_cast<int>(std::ceil(contentWidth())) + 2 * metrics.horizontalPadding,
            std::max(metrics.minimumHeight, static_cast<int>(std::ceil(text.height())) + 8)};
}

CapsuleButton::Colors CapsuleButton::colors(CapsuleStyle style, ThemeColor tint, ControlState state,
                                            const Theme& theme)
{
    const bool isPressed = state == ControlState::pressed;
    const bool isHovered = state == ControlState::hovered;
    Colors colors;
    if (state == ControlState::disabled) {
        colors = {theme.color(ThemeColor::label, 0.04), theme.color(ThemeColor::tertiaryLabel)};
    } else if (style == CapsuleStyle::primary) {
        // The fill keeps this share of its tint and gives the rest to black: on white the text would fade
        // under the finger, to 3:1, if the background shone through instead.
        const float share = isPressed ? 0.78F : isHovered ? 0.92F : 1.0F;
        QColor fill = theme.color(fillFor(tint));
        fill.setAlphaF(share);
        colors = {blended(fill, Qt::black), theme.color(ThemeColor::onFill)};
    } else if (style == CapsuleStyle::destructive) {
        colors = {theme.color(ThemeColor::focus, isPressed   ? 0.095
                                                 : isHovered ? 0.075
                                                             : 0.05),
                  theme.color(ThemeColor::focusText)};
    } else {
        colors = {theme.color(ThemeColor::label, isPressed   ? 0.085
                                                 : isHovered ? 0.075
                                                             : 0.055),
                  theme.color(ThemeColor::label, isPressed   ? 0.58
                                                 : isHovered ? 0.88
                                                             : 0.78)};
    }
    return colors;
}

void CapsuleButton::paintEvent(QPaintEvent*)
{
    const Theme theme = Theme::of(*this);
    const CapsuleMetrics metrics = metricsOf(m_size);
    const Colors resting = colors(m_style, m_tint, isDown() ? ControlState::hovered : state(), theme);
    const Colors pressed = colors(m_style, m_tint, ControlState::pressed, theme);
    const double press = m_press.value();

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (press > 0) {
        const double scale = 1 - (1 - pressedScale) * press;
        const QPointF centre = QRectF(rect()).center();
        painter.translate(centre);
        painter.scale(scale, scale);
        painter.translate(-centre);
    }
    QRectF shape = rect();
    if (showsFocusRing()) {
        paintFocusRing(painter, shape, shape.height() / 2, theme);
        shape.adjust(focusRingInset, focusRingInset, -focusRingInset, -focusRingInset);
    }
    painter.fillPath(capsulePath(shape), mixed(resting.fill, pressed.fill, press));

    const QColor label = mixed(resting.label, pressed.label, press);
    const QFont font = labelFont(m_style, m_size);
    double left = (width() - contentWidth()) / 2;
    if (m_symbol != Symbol::none) {
        paintSymbol(painter, m_symbol,
                    {left - symbolBearing, (height() - metrics.symbolSize) / 2.0,
                     static_cast<double>(metrics.symbolSize), static_cast<double>(metrics.symbolSize)},
                    label);
        left += metrics.symbolSize - symbolBearing + metrics.symbolGap;
    }
    painter.setFont(font);
    painter.setPen(label);
    drawTextOnBaseline(painter, QRectF(left, 0, width() - left, height()), Qt::AlignLeft, text());
}

bool CapsuleButton::hitButton(const QPoint& position) const
{
    return capsulePath(rect()).contains(position);
}

void CapsuleButton::animatePress(bool isDown)
{
    const std::chrono::milliseconds duration(m_style == CapsuleStyle::primary ? 140 : 120);
    m_press.animateTo(isDown ? 1 : 0, {duration, QEasingCurve::OutQuad, 8});
}

double CapsuleButton::contentWidth() const
{
    const CapsuleMetrics metrics = metricsOf(m_size);
    const double text = QFontMetricsF(labelFont(m_style, m_size)).horizontalAdvance(this->text());
    return m_symbol == Symbol::none ? text : metrics.symbolSize - symbolBearing + metrics.symbolGap + text;
}

} // namespace brevlin
