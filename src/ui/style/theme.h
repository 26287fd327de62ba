#pragma once

#include "core/timer_vocabulary.h"

#include <QColor>
#include <QPalette>

class QWidget;

namespace brevlin {

enum class ColorScheme { light, dark };

/// Every colour of the program by what it is for; the values stand in one table in theme.cpp.
enum class ThemeColor {
    canvas,           ///< what a screen lies on
    panelBackground,  ///< cards
    windowBackground, ///< the top bar
    label,            ///< primary text
    secondaryLabel,   ///< captions and whatever explains
    tertiaryLabel,    ///< symbols only: 3:1, too faint for text
    quaternaryLabel,  ///< decoration only
    separator,
    cardBorder,
    cardShadow,
    focus,
    breakGreen,
    focusText,      ///< the focus colour where it is text
    breakGreenText, ///< the break colour where it is text
    breakGreenFill, ///< the break colour under white text
    onFill,         ///< text on a filled button
    green,          ///< went well
    orange,         ///< deserves a look
    focusRing,      ///< around whatever the keyboard acts on
};

/// The colours of one scheme. A widget asks for its theme when it paints and keeps none, so that a new
/// application palette is all that a switch between light and dark takes.
class Theme final
{
public:
    constexpr explicit Theme(ColorScheme scheme) : m_scheme(scheme) {}

    /// The theme that this palette belongs to, told by the lightness of its window colour.
    static Theme of(const QPalette& palette);
    static Theme of(const QWidget& widget);

    ColorScheme scheme() const { return m_scheme; }
    QColor color(ThemeColor role) const;
    /// The colour at this fraction (0 to 1) of its own opacity.
    QColor color(ThemeColor role, double opacity) const;

    /// The palette that the application sets. A plain QLabel is drawn in the secondary label colour by
    /// setForegroundRole(QPalette::PlaceholderText) and in the focus colour by QPalette::Link.
    static QPalette palette(ColorScheme scheme);

    friend bool operator==(const Theme&, const Theme&) = default;

private:
    ColorScheme m_scheme;
};

/// The colour of a phase's ring, icon and indicator.
ThemeColor phaseColor(TimerPhase phase);
/// The deepest form of a tint that white text can be read on, for filled buttons; the tint itself where it is
/// deep enough.
ThemeColor fillFor(ThemeColor tint);
/// The form of a tint that can be read as text on the scheme's backgrounds.
ThemeColor textFor(ThemeColor tint);

/// `top` painted over the opaque `bottom`.
QColor blended(const QColor& top, const QColor& bottom);
/// The very colour that a painter gives. What is painted with it needs no blending, which Qt spreads over
/// several threads and waits for: a window's first picture takes longer for that.
QColor paintedOver(const QColor& top, const QColor& bottom);

} // namespace brevlin
