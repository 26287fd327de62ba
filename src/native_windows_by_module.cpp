#include "native_windows.h"
#include "platform/freedesktop/files/program_files.h"
#include "platform/freedesktop/wayland/layer_module.h"
#include "platform/freedesktop/wayland/layer_shell_probe.h"
#include "platform/freedesktop/wayland/wayland_window_system.h"

#include <QGuiApplication>

#include <dlfcn.h>

#include <cstdio>

namespace brevlin {

namespace {

using Maker = decltype(&brevlinMakeLayerWindowSystem);

constexpr std::chrono::milliseconds patience{50};

/// None where it cannot be loaded, which is said once.
Maker loadedMaker()
{
    static const Maker maker = [] {
        void* module = dlopen(programFile("brevlin-wayland.so").c_str(), RTLD_NOW | RTLD_LOCAL);
        void* function = module != nullptr ? dlsym(module, "brevlinMakeLayerWindowSystem") : nullptr;
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
    return WindowSystems{std::unique_ptr<FloatingWindowSystem>(loadedMaker()()),
                         std::make_unique<WaylandWindowSystem>()};
}

} // namespace brevlin
