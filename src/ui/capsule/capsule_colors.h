#pragma once

#include "core/timer_vocabulary.h"
#include "storage/app_preferences.h"

#include <QColor>

namespace brevlin {

class Theme;

/// The colours of the capsule in one appearance.
struct CapsuleColors
{
    QColor background;
    QColor completionBackground;
    QColor outline;
    QColor completionOutline;
    QColor text;
    QColor endTime;
    QColor secondary; ///< captions and quiet symbols
    QColor buttonFill;
};

/// The blurred surface takes the desktop's scheme; where nothing blurs what lies behind, it is dense enough
/// that its texts can be read on white and on black.
CapsuleColors capsuleColors(TopTimerAppearance appearance, const Theme& theme, bool isBlurred);

} // namespace brevlin
