#pragma once

#include "core/timer_vocabulary.h"
#include "platform/status_item.h"

#include <cstdint>
#include <optional>

namespace brevlin {

/// What the status item's picture tells. A change of anything else leaves the picture as it is.
struct TrayPictureContent
{
    TimerPhase phase = TimerPhase::focus;
    std::optional<std::int64_t> minutes; ///< none while idle
    bool isPaused = false;

    bool operator==(const TrayPictureContent&) const = default;
};

/// The phase's logo and, where minutes are given, a badge of them for desktops that have no room for the
/// clock. The badge tells the phase by its shape as well as by its colour: square for focus, round for
/// breaks; grey while paused. Both stand on light and dark bars.
StatusPictures trayPictures(const TrayPictureContent& content);

} // namespace brevlin
