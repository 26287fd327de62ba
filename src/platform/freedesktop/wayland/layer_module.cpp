#include "platform/freedesktop/wayland/layer_module.h"

#include "platform/freedesktop/wayland/layer_window_system.h"

brevlin::FloatingWindowSystem* brevlinMakeLayerWindowSystem()
{
    return new brevlin::LayerWindowSystem;
}
