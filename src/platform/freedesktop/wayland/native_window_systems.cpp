#include "platform/freedesktop/wayland/native_window_systems.h"

#include "platform/freedesktop/wayland/layer_window_system.h"
#include "platform/freedesktop/wayland/wayland_window_system.h"
#include "platform/window_systems.h"

extern "C" void brevlinNativeWindowSystems(brevlin::WindowSystems& systems)
{
    systems.floating = std::make_unique<brevlin::LayerWindowSystem>();
    systems.windows = std::make_unique<brevlin::WaylandWindowSystem>();
}
