#include "native_windows.h"

// Built where there was no library for the layer shell.

namespace brevlin {

bool canBeNative()
{
    return false;
}

std::optional<WindowSystems> nativeWindowSystems()
{
    return std::nullopt;
}

} // namespace brevlin
