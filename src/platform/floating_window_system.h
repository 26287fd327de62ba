#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace brevlin {

class LayerSurfaces;

/// What a window that floats above every other window, without a window manager's help, needs from the window
/// system. Windows are named by their native identifier; lengths are native pixels.
class FloatingWindowSystem
{
public:
    using WindowId = std::uint64_t;

    struct Rectangle
    {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;

        bool operator==(const Rectangle&) const = default;
    };

    struct Size
    {
        int width = 0;
        int height = 0;
    };

    enum class PointerSight {
        everywhere, ///< its place, wherever it is
        inside,     ///< that it enters and leaves a window, and its place there
        uncertain,  ///< the same, but that it leaves only above other windows of the same X server
    };

    enum class Edge { left, right, top, bottom };

    /// What a panel of the desktop keeps free of other windows: it begins at this edge of the whole desktop.
    struct ReservedArea
    {
        Edge edge = Edge::top;
        Rectangle area; ///< in the coordinates of the whole desktop

        bool operator==(const ReservedArea&) const = default;
    };

    /// What is left of a window's rectangle, in the window's coordinates.
    struct Shape
    {
        std::optional<std::vector<Rectangle>> seen;    ///< nothing: all of it
        std::optional<std::vector<Rectangle>> clicked; ///< nothing: all that is seen
    };

    virtual ~FloatingWindowSystem() = default;

    /// Says what the window is, so that it never gets the keyboard and no compositor adds a shadow. To be
    /// called before every time that it is shown.
    virtual void prepareToShow(WindowId window) = 0;
    /// From now on the window, while it is shown, lies above everything that the window manager governs, on
    /// every workspace, and below what else floats: menus, tool tips and whatever locks the screen.
    virtual void keepAbove(WindowId window) = 0;
    /// To be called before a window's rectangle changes: what it shows then stays where it is on the desktop
    /// until it is painted anew, and what is new is transparent.
    virtual void prepareResize(WindowId window, const Rectangle& from, const Rectangle& to) = 0;
    /// Where the window system does not cut what is clicked, as some X servers of Wayland sessions, clicks
    /// into the whole rectangle are the window's.
    virtual void setShape(WindowId window, const Shape& shape) = 0;

    /// Whether something hides a whole screen that no window manager governs, as a screen locker does:
    /// nothing may be shown above it.
    virtual bool isScreenCovered() = 0;
    /// What the window system tells of the pointer.
    virtual PointerSight pointerSight() const = 0;
    /// Where the sight is uncertain: whether it will all the same be told that the pointer, as it moved last,
    /// leaves the window that is kept above. Then a pointer that rests is inside.
    virtual bool isLeavingTold() const { return false; }
    /// What lays windows where they cannot do so themselves; none where they can.
    virtual LayerSurfaces* layers() { return nullptr; }
    /// How much of the screen with this geometry, both in points, panels leave free where their places are
    /// not told; nothing where they are, and while it is not known.
    virtual std::optional<Size> freeSize(const Rectangle& /*screen*/) const { return std::nullopt; }

    /// Whether translucent pixels show what lies behind them; without this they show black.
    virtual bool isComposited() const = 0;
    /// Whether what lies behind a window can be blurred.
    virtual bool blurs() const = 0;
    /// Blurs what lies behind this part of the window, where the system blurs.
    virtual void setBlurredPart(WindowId window, const std::vector<Rectangle>& part) = 0;

    virtual std::vector<ReservedArea> reservedAreas() const = 0;

    /// Called on the main thread when one of the above may have changed.
    virtual void setChangeHandler(std::function<void()> handler) = 0;
};

} // namespace brevlin
