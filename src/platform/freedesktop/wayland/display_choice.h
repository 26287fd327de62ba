#pragma once

#include <functional>
#include <string>

namespace brevlin {

/// The variable of the environment by which a user decides: "x11" or "wayland".
inline constexpr const char* platformVariable = "BREVLIN_PLATFORM";

enum class Platform {
    byQt, ///< what Qt itself takes, by its own variable or because nothing else is there
    x11,
    wayland,
};

struct DisplayFacts
{
    std::string wish;       ///< of platformVariable; empty for none
    std::string qtPlatform; ///< of QT_QPA_PLATFORM; empty for none
    bool hasX11 = false;
    bool hasWayland = false;
    /// Whether the program can do all that it does as a native Wayland program. Asked at most once.
    std::function<bool()> canBeNative;
};

struct DisplayChoice
{
    Platform platform = Platform::byQt;
    std::string complaint; ///< about a wish that cannot be met, in both languages; empty for none
};

/// Native Wayland where the capsule has its place there, else X11, in a Wayland session through its X server.
DisplayChoice chooseDisplay(const DisplayFacts& facts);

} // namespace brevlin
