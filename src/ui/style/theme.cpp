#include "ui/style/theme.h"

#include <QImage>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <array>
#include <cmath>

namespace brevlin {

namespace {

/// An ink is a colour at an opacity, so that borders and captions stay right on every background.
struct Ink
{
    QRgb rgb;
    double opacity = 1;

    QColor color() const
    {
        QColor result(rgb);
        result.setAlphaF(static_cast<float>(opacity));
        return result;
    }
};

struct ThemeEntry
{
    ThemeColor role;
    Ink light;
    Ink dark;
};

constexpr QRgb darkInk = qRgb(12, 10, 9);
constexpr QRgb lightInk = qRgb(255, 253, 250);

// Two fixed hues carry the meaning: red is focus, green is a break. They are exact wherever a shape is
// painted (mark, ring, indicator). As text the red is deepened on the light bar and lifted on dark
// backgrounds, where it would reach only 4.3:1 and 3.5:1; under white text the green is deepened from 3.3:1
// to 4.6:1. The focus ring is ink, not a hue, because it must stand out from both.
constexpr std::array table{
    ThemeEntry{ThemeColor::canvas, {qRgb(255, 255, 255)}, {qRgb(24, 23, 22)}},
    ThemeEntry{ThemeColor::panelBackground, {qRgb(255, 255, 255)}, {qRgb(33, 32, 31)}},
    ThemeEntry{ThemeColor::windowBackground, {qRgb(249, 248, 246)}, {qRgb(30, 29, 28)}},
    ThemeEntry{ThemeColor::label, {darkInk}, {lightInk}},
    ThemeEntry{ThemeColor::secondaryLabel, {darkInk, 0.62}, {lightInk, 0.6}},
    ThemeEntry{ThemeColor::tertiaryLabel, {darkInk, 0.46}, {lightInk, 0.42}},
    ThemeEntry{ThemeColor::quaternaryLabel, {darkInk, 0.22}, {lightInk, 0.22}},
    ThemeEntry{ThemeColor::separator, {darkInk, 0.085}, {lightInk, 0.085}},
    ThemeEntry{ThemeColor::cardBorder, {darkInk, 0.1}, {lightInk, 0.1}},
    ThemeEntry{ThemeColor::cardShadow, {qRgb(0, 0, 0), 0.028}, {qRgb(0, 0, 0), 0.028}},
    ThemeEntry{ThemeColor::focus, {qRgb(221, 45, 74)}, {qRgb(221, 45, 74)}},
    ThemeEntry{ThemeColor::breakGreen, {qRgb(106, 153, 78)}, {qRgb(106, 153, 78)}},
    ThemeEntry{ThemeColor::focusText, {qRgb(201, 32, 62)}, {qRgb(255, 104, 124)}},
    ThemeEntry{ThemeColor::breakGreenText, {qRgb(70, 112, 48)}, {qRgb(134, 184, 104)}},
    ThemeEntry{ThemeColor::breakGreenFill, {qRgb(84, 128, 60)}, {qRgb(84, 128, 60)}},
    ThemeEntry{ThemeColor::onFill, {qRgb(255, 255, 255)}, {qRgb(255, 255, 255)}},
    ThemeEntry{ThemeColor::green, {qRgb(31, 122, 58)}, {qRgb(92, 204, 122)}},
    ThemeEntry{ThemeColor::orange, {qRgb(168, 84, 0)}, {qRgb(255, 170, 76)}},
    ThemeEntry{ThemeColor::focusRing, {darkInk, 0.72}, {lightInk, 0.8}},
};

constexpr bool tableIsInOrder()
{
    for (std::size_t index = 0; index < table.size(); ++index) {
        if (table[index].role != static_cast<ThemeColor>(index))
            return false;
    }
    return true;
}
static_assert(tableIsInOrder(), "the table is looked up by position");

} // namespace

Theme Theme::of(const QPalette& palette)
{
    const bool isDark = palette.color(QPalette::Active, QPalette::Window).lightnessF() < 0.5F;
    return Theme(isDark ? ColorScheme::dark : ColorScheme::light);
}

Theme Theme::of(const QWidget& widget)
{
    return of(widget.palette());
}

QColor Theme::color(ThemeColor role) const
{
    const ThemeEntry& entry = table[static_cast<std::size_t>(role)];
    return (m_scheme == ColorScheme::dark ? entry.dark : entry.light).color();
}

QColor Theme::color(ThemeColor role, double opacity) const
{
    QColor result = color(role);
    result.setAlphaF(result.alphaF() * static_cast<float>(std::clamp(opacity, 0.0, 1.0)));
    return result;
}

QPalette Theme::palette(ColorScheme scheme)
{
    const Theme theme(scheme);
    const QColor window = theme.color(ThemeColor::windowBackground);
    const QColor panel = theme.color(ThemeColor::panelBackground);
    const QColor label = theme.color(ThemeColor::label);
    const QColor button = blended(theme.color(ThemeColor::label, 0.055), panel);

    QPalette palette(label, button, blended(theme.color(ThemeColor::label, 0.02), panel),
                     blended(theme.color(ThemeColor::label, 0.3), panel),
                     blended(theme.color(ThemeColor::label, 0.15), panel), label,
                     theme.color(ThemeColor::onFill), theme.color(ThemeColor::canvas), window);
    palette.setColor(QPalette::AlternateBase, blended(theme.color(ThemeColor::label, 0.03), panel));
    palette.setColor(QPalette::PlaceholderText, theme.color(ThemeColor::secondaryLabel));
    palette.setColor(QPalette::Highlight, theme.color(ThemeColor::focus));
    palette.setColor(QPalette::HighlightedText, theme.color(ThemeColor::onFill));
    palette.setColor(QPalette::Link, theme.color(ThemeColor::focusText));
    palette.setColor(QPalette::LinkVisited, theme.color(ThemeColor::focusText));
    palette.setColor(QPalette::ToolTipBase, panel);
    palette.setColor(QPalette::ToolTipText, label);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, theme.color(ThemeColor::tertiaryLabel));
    return palette;
}

ThemeColor phaseColor(TimerPhase phase)
{
    return phase == TimerPhase::focus ? ThemeColor::focus : ThemeColor::breakGreen;
}

ThemeColor fillFor(ThemeColor tint)
{
    return tint == ThemeColor::breakGreen ? ThemeColor::breakGreenFill : tint;
}

ThemeColor textFor(ThemeColor tint)
{
    switch (tint) {
    case ThemeColor::focus:
        return ThemeColor::focusText;
    case ThemeColor::breakGreen:
        return ThemeColor::breakGreenText;
    default:
        return tint;
    }
}

QColor paintedOver(const QColor& top, const QColor& bottom)
{
    QImage pixel(1, 1, QImage::Format_RGB32);
    pixel.fill(bottom);
    QPainter(&pixel).fillRect(pixel.rect(), top);
    return pixel.pixelColor(0, 0);
}

QColor blended(const QColor& top, const QColor& bottom)
{
    const float share = top.alphaF();
    const auto mix = [share](float above, float below) {
        return above * share + below * (1 - share);
    };
    return QColor::fromRgbF(mix(top.redF(), bottom.redF()), mix(top.greenF(), bottom.greenF()),
                            mix(top.blueF(), bottom.blueF()));
}

} // namespace brevlin
