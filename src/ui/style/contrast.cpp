#include "ui/style/contrast.h"

#include "ui/style/theme.h"

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

double luminance(const QColor& color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

double contrastRatio(const QColor& first, const QColor& second)
{
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor legible(QColor ink, std::span<const QColor> grounds, double contrast)
{
    const auto isLegible = [&](const QColor& ground) {
        return contrastRatio(blended(ink, ground), ground) >= contrast;
    };
    while (ink.alpha() < 255 && !std::ranges::all_of(grounds, isLegible)) {
        ink.setAlpha(ink.alpha() + 1);
    }
    return ink;
}

} // namespace brevlin
