#include "ui/capsule/capsule_colors.h"

#include "ui/style/theme.h"

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

CapsuleColors systemColors(const Theme& theme, bool isBlurred)
{
    constexpr double blurredDensity = 0.7;
    constexpr double plainDensity = 0.86;
    const QColor surface =
        theme.color(ThemeColor::panelBackground, isBlurred ? blurredDensity : plainDensity);
    return {surface,
            surface,
            theme.color(ThemeColor::label, 0.12),
            theme.color(ThemeColor::label, 0.16),
            theme.color(ThemeColor::label, 0.92),
            theme.color(ThemeColor::label, 0.76),
            theme.color(ThemeColor::label, 0.72),
            theme.color(ThemeColor::label, 0.10)};
}

} // namespace

CapsuleColors capsuleColors(TopTimerAppearance appearance, const Theme& theme, bool isBlurred)
{
    switch (appearance) {
    case TopTimerAppearance::systemBlur:
        return systemColors(theme, isBlurred);
    case TopTimerAppearance::light:
        return {white(0.96), white(0.96), black(0.08), black(0.12),
                black(0.86), black(0.56), black(0.62), black(0.08)};
    case TopTimerAppearance::dark:
        break;
    }
    return {black(0.94), black(0.97), white(0.045), white(0.08),
            white(1),    white(0.5),  white(0.72),  white(0.12)};
}

} // namespace brevlin
