#pragma once

#include "platform/window_systems.h"

#include <optional>

namespace brevlin {

/// Whether this is built to be a native Wayland program, and can be here: the compositor that the environment
/// names lays the capsule where it belongs. May wait 50 ms for it.
bool canBeNative();

/// Of a program that runs natively where it can; none elsewhere. There has to be an application.
std::optional<WindowSystems> nativeWindowSystems();

} // namespace brevlin
