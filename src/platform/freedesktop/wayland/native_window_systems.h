#pragma once

namespace brevlin {

struct WindowSystems;

} // namespace brevlin

extern "C" {
/// What the module gives: the systems of a native Wayland program whose compositor has a layer shell.
void brevlinNativeWindowSystems(brevlin::WindowSystems& systems);
}
