#pragma once

#include <QColor>

#include <span>

namespace brevlin {

/// The least contrast of a text, and of a symbol, with what it stands on
/// (https://www.w3.org/TR/WCAG21/#contrast-minimum, https://www.w3.org/TR/WCAG21/#non-text-contrast).
inline constexpr double textContrast = 4.5;
inline constexpr double symbolContrast = 3.0;

/// The contrast of two opaque colours, 1 to 21 (https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio).
double contrastRatio(const QColor& first, const QColor& second);

/// The ink at the least opacity, but no less than its own, that reaches this contrast on each of the opaque
/// grounds; opaque where none does.
QColor legible(QColor ink, std::span<const QColor> grounds, double contrast = textContrast);

} // namespace brevlin
