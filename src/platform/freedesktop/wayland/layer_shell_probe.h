#pragma once

#include <chrono>

namespace brevlin {

/// Whether the Wayland compositor that the environment names has a layer shell
/// (https://wayland.app/protocols/wlr-layer-shell-unstable-v1). False, too, where it does not answer in this
/// time, and where there is none. Qt need not be there yet.
bool offersLayerShell(std::chrono::milliseconds patience);

} // namespace brevlin
