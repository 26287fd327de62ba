#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace brevlin {

/// Ends what it watches when it goes.
class PressWatch
{
public:
    virtual ~PressWatch() = default;
};

/// What a window that draws its own title bar and border needs from the window manager. Windows are named by
/// their native identifier; lengths are native pixels.
class WindowSystem
{
public:
    using WindowId = std::uint64_t;

    struct Extents
    {
        std::uint32_t left = 0;
        std::uint32_t right = 0;
        std::uint32_t top = 0;
        std::uint32_t bottom = 0;
    };

    virtual ~WindowSystem() = default;

    /// Whether windows know and choose their places on the desktop; else only their sizes.
    virtual bool tellsPlaces() const = 0;
    /// Whether a window may be larger than it looks, with a shadow painted into the margin. May change at any
    /// time.
    virtual bool supportsShadowMargins() const = 0;
    /// Called on the main thread when that may have changed.
    virtual void setSupportChangeHandler(std::function<void()> handler) = 0;
    /// Whether translucent pixels of a window show what lies behind it; without this they show black.
    virtual bool isComposited() const = 0;
    /// How much of the window is shadow.
    virtual void setShadowMargins(WindowId window, const Extents& extents) = 0;
    /// Tells of presses anywhere but on the window that is shown next, also where taking hold of the pointer
    /// does not. `pressed` is called on the main thread and may end the watch.
    virtual std::unique_ptr<PressWatch> watchPresses(std::function<void()> pressed) = 0;
    /// Puts pixels where a window is shown. Each is 32 bits, alpha first, premultiplied, and opaque in an
    /// opaque window. False where the window does not take them as they are.
    struct Pixels
    {
        const std::uint32_t* first; ///< of the upper row, from the left
        std::size_t stride;         ///< pixels from one row to the next
        std::int16_t x;             ///< in the window
        std::int16_t y;
        std::uint16_t width;
        std::uint16_t height;
    };
    virtual bool putPixels(WindowId window, const Pixels& pixels) = 0;
    /// Asks for the window manager's own menu at a place of the screen; false where there is none.
    virtual bool showWindowMenu(WindowId window, int x, int y) = 0;
    /// Raises the window and gives it the keyboard, as the user's own wish. The token is what the desktop
    /// gave to the user's action, of X11's kind or Wayland's; empty where there is none.
    virtual void activate(WindowId window, const std::string& token) = 0;
};

} // namespace brevlin
