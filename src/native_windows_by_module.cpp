#include "native_windows.h"

#include "platform/freedesktop/files/program_files.h"
#include "platform/freedesktop/wayland/layer_shell_probe.h"
#include "platform/freedesktop/wayland/native_window_systems.h"

#include <QGuiApplication>

#include <dlfcn.h>

#include <cstdio>

namespace brevlin {

namespace {

using Maker = decltype(&brevlinNativeWindowSystems);

constexpr std::chrono::milliseconds patience{50};

/// None where it cannot be loaded, which is said once.
Maker loadedMaker()
{
    static const Maker maker = [] {
        void* module = dlopen(programFile("brevlin-wayland.so").c_str(), RTLD_NOW | RTLD_LOCAL);
        void* function = module != nullptr ? dlsym(module, "brevlinNativeWindowSystems") : nullptr;
        if (function == nullptr) {
            std::fprintf(stderr, "Brevlin: %s\n", dlerror());
        }
        return reinterpret_cast<Maker>(function);
    }();
    return maker;
}

} // namespace

bool canBeNative()
{
    static const bool can = offersLayerShell(patience) && loadedMaker() != nullptr;
    return can;
}

std::optional<WindowSystems> nativeWindowSystems()
{
    // The user may have chosen Wayland by Qt's own means.
    if (QGuiApplication::platformName() != QLatin1String("wayland") || !canBeNative()) {
        return std::nullopt;
    }
    WindowSystems systems;
    loadedMaker()(systems);
    return systems;
}

} // namespace brevlin
