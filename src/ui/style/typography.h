#pragma once

#include <QFont>
#include <QStringList>

namespace brevlin {

enum class FontDesign {
    standard,
    rounded,    ///< a rounded companion where a good one is installed, else the standard design
    monospaced, ///< every character as wide as the other
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

/// The families of the application's font, first choice first: the desktop's own font or, where the desktop
/// names none (`desktopFamily` is empty or generic), the first installed of ours; then Chinese in its
/// Simplified forms.
QStringList applicationFamilies(const QString& desktopFamily, const QStringList& installed);

/// Gives the application its font, with Chinese fallbacks, and remembers the rounded companion in the
/// application's own table of fonts. Call once, before the first widget; the desktop's font must still stand.
void installFonts();

} // namespace brevlin
