#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace brevlin {

/// What a panel that floats above every other window needs from the window manager. Windows are named by
/// their native identifier; lengths are native pixels.
class FloatingPanelSystem
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

    enum class Edge { left, right, top, bottom };

    /// What a panel of the desktop keeps free of other windows: it begins at this edge of the whole desktop.
    struct ReservedArea
    {
        Edge edge = Edge::top;
        Rectangle area; ///< in the coordinates of the whole desktop

        bool operator==(const ReservedArea&) const = default;
    };

    virtual ~FloatingPanelSystem() = default;

    /// Asks that the window lies above all others, on every workspace and in no list of windows, and never
    /// gets the keyboard. To be called before every time that it is shown, because a hidden window is
    /// forgotten.
    virtual void prepareToShow(WindowId window) = 0;
    /// Asks again once it is shown, for managers that only listen then.
    virtual void keepAbove(WindowId window) = 0;

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
