#pragma once

#include "core/timer_vocabulary.h"
#include "storage/app_preferences.h"
#include "ui/controls/plain_button.h"

#include <QColor>

namespace brevlin {

class Theme;

/// What the screen shows through the capsule's surface.
enum class CapsuleBackdrop {
    blurred, ///< what lies behind, blurred by the compositor
    clear,   ///< what lies behind, as it is
    nothing, ///< without a compositor there is the surface alone
};

/// The colours of one of the capsule's buttons.
struct CapsuleButtonLook
{
    struct Colors
    {
        QColor fill;
        QColor content; ///< text or symbol
    };
    Colors normal;
    Colors hovered;
    Colors pressed;

    const Colors& in(ControlState state) const;
};

/// The colours of the capsule in one appearance.
struct CapsuleColors
{
    QColor background;
    QColor completionBackground;
    QColor outline;
    QColor completionOutline;
    QColor text;
    QColor endTime;
    QColor secondary; ///< captions
    CapsuleButtonLook emphasizedButton;
    CapsuleButtonLook textButton;
    CapsuleButtonLook quietButton;
    CapsuleButtonLook islandButton;
};

/// The blurred surface takes the desktop's scheme. Every text and symbol can be read in every state, whatever
/// lies behind: an ink that is too faint on white or on black is as much stronger as that takes.
CapsuleColors capsuleColors(TopTimerAppearance appearance, const Theme& theme, CapsuleBackdrop backdrop);

/// The island's main button: dark on the phase's colour.
CapsuleButtonLook islandPrimaryLook(const QColor& tint);

} // namespace brevlin
