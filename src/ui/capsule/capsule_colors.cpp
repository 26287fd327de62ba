#include "ui/capsule/capsule_colors.h"

#include "ui/style/contrast.h"
#include "ui/style/theme.h"

#include <algorithm>
#include <array>

namespace brevlin {

namespace {

QColor black(double opacity)
{
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity));
}

QColor white(double opacity)
{
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(opacity));
}

QColor scaled(QColor color, double factor)
{
    color.setAlphaF(std::min(color.alphaF() * static_cast<float>(factor), 1.0F));
    return color;
}

/// What an appearance is made of, before it is seen to that all can be read.
struct Palette
{
    QColor surface;
    QColor completionSurface;
    QColor outline;
    QColor completionOutline;
    QColor text;
    QColor endTime;
    QColor secondary;
    QColor fill;
};

Palette paletteOf(TopTimerAppearance appearance, const Theme& theme, bool isBlurred)
{
    switch (appearance) {
    case TopTimerAppearance::systemBlur: {
        // Where nothing blurs what lies behind, the surface is denser.
        const QColor surface = theme.color(ThemeColor::panelBackground, isBlurred ? 0.76 : 0.86);
        const auto ink = [&theme](double opacity) {
            return theme.color(ThemeColor::label, opacity);
        };
        return {surface, surface, ink(0.12), ink(0.16), ink(0.92), ink(0.76), ink(0.72), ink(0.10)};
    }
    case TopTimerAppearance::light:
        return {white(0.96), white(0.96), black(0.08), black(0.12),
                black(0.86), black(0.48), black(0.62), black(0.08)};
    case TopTimerAppearance::dark:
        break;
    }
    return {black(0.94), black(0.97), white(0.045), white(0.08),
            white(1),    white(0.5),  white(0.72),  white(0.12)};
}

/// The surfaces of an appearance over the lightest and over the darkest desktop.
using Grounds = std::array<QColor, 4>;

Grounds under(const QColor& fill, Grounds grounds)
{
    for (QColor& ground : grounds) {
        ground = blended(fill, ground);
    }
    return grounds;
}

struct PressedShare
{
    double fill;
    double content;
};

// Hovered controls are a touch stronger, pressed ones fainter.
CapsuleButtonLook buttonLook(const QColor& fill, const QColor& content, PressedShare pressed,
                             const Grounds& grounds)
{
    constexpr double hoveredShare = 1.6;
    const auto colors = [&](double fillShare, double contentShare) {
        const QColor shown = scaled(fill, fillShare);
        return CapsuleButtonLook::Colors{shown,
                                         legible(scaled(content, contentShare), under(shown, grounds))};
    };
    return {colors(1, 1), colors(hoveredShare, 1), colors(pressed.fill, pressed.content)};
}

} // namespace

const CapsuleButtonLook::Colors& CapsuleButtonLook::in(ControlState state) const
{
    switch (state) {
    case ControlState::hovered:
        return hovered;
    case ControlState::pressed:
        return pressed;
    default:
        return normal;
    }
}

CapsuleColors capsuleColors(TopTimerAppearance appearance, const Theme& theme, CapsuleBackdrop backdrop)
{
    Palette palette = paletteOf(appearance, theme, backdrop == CapsuleBackdrop::blurred);
    if (backdrop == CapsuleBackdrop::nothing) {
        palette.surface.setAlpha(255);
        palette.completionSurface.setAlpha(255);
    }
    const Grounds grounds{blended(palette.surface, Qt::white), blended(palette.surface, Qt::black),
                          blended(palette.completionSurface, Qt::white),
                          blended(palette.completionSurface, Qt::black)};
    constexpr PressedShare roundPressed{0.6, 0.72};
    constexpr PressedShare islandPressed{0.65, 0.72};
    const QColor quietFill = scaled(palette.fill, 0.82);
    return {palette.surface,
            palette.completionSurface,
            palette.outline,
            palette.completionOutline,
            legible(palette.text, grounds),
            legible(palette.endTime, grounds),
            legible(palette.secondary, grounds),
            buttonLook(palette.fill, palette.text, roundPressed, grounds),
            buttonLook(palette.fill, palette.secondary, roundPressed, grounds),
            buttonLook(quietFill, palette.secondary, roundPressed, grounds),
            buttonLook(palette.fill, palette.secondary, islandPressed, grounds)};
}

// Pressed, the fill gives way to white: over a dark surface the dark text would fade under the finger.
CapsuleButtonLook islandPrimaryLook(const QColor& tint)
{
    const auto colors = [](const QColor& fill) {
        return CapsuleButtonLook::Colors{fill, legible(black(0.86), std::array{fill})};
    };
    return {colors(tint), colors(tint.lighter(112)), colors(blended(scaled(tint, 0.72), Qt::white))};
}

} // namespace brevlin
