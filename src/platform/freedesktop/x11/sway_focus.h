#pragma once

#include <cstdint>

namespace brevlin {

/// Asks sway to give the keyboard to this X11 window, on whatever workspace and behind whatever full-screen
/// window it lies: as it is set up by default, sway only marks a window as urgent that asks in X11's way.
/// Elsewhere nothing happens. Never waits.
void askSwayToFocus(std::uint32_t window);

} // namespace brevlin
