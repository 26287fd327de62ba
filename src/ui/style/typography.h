#pragma once

#include <QFont>

namespace brevlin {

enum class FontDesign {
    standard,
    rounded,    ///< where a round design is wished for; no font at hand has one, so it is the standard design
    monospaced, ///< every figure as wide as the other; figures and the colon only
};

/// The text sizes that screens name instead of numbers.
enum class TextRole {
    title,        ///< 22
    headline,     ///< 15, semibold
    body,         ///< 13
    callout,      ///< 12
    caption,      ///< 11
    smallCaption, ///< 10
};

/// The font of a role, from the application's font.
QFont textFont(TextRole role, QFont::Weight weight = QFont::Normal);
/// The application's font at `points` device-independent pixels. Qt 6.4 loads a font at whole pixels only, so
/// a half rounds up: 11.5 is drawn at 12.
QFont systemFont(double points, QFont::Weight weight = QFont::Normal,
                 FontDesign design = FontDesign::standard);

/// Whether a desktop that names this family leaves the choice to the program.
bool isGenericFamily(const QString& family);

/// Gives the application its font: the desktop's own or, where the desktop names none, the one that the
/// program brings along; Chinese comes after it. Call once, before the first widget and before any font is
/// looked for.
void installFonts();

} // namespace brevlin
