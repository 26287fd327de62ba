#pragma once

#include "platform/floating_window_system.h"
#include "platform/window_system.h"

#include <memory>

namespace brevlin {

/// Both sides of one desktop.
struct WindowSystems
{
    std::unique_ptr<FloatingWindowSystem> floating;
    std::unique_ptr<WindowSystem> windows;
};

} // namespace brevlin
