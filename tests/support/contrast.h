#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

namespace brevlin::test {

inline double luminance(const QColor& color)
{
    const auto linear = [](float channel) {
        const double c = channel;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// The contrast of two opaque colours, 1 to 21, as WCAG 2 defines it
/// (https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio).
inline double contrastRatio(const QColor& first, const QColor& second)
{
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace brevlin::test
