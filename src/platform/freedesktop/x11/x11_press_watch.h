#pragma once

#include "platform/freedesktop/x11/x11_connection.h"
#include "platform/window_system.h"

#include <QAbstractNativeEventFilter>

#include <functional>
#include <vector>

namespace brevlin {

/// An invisible window over each screen, below the one that is shown next: what is pressed there was
/// meant for something else. Under XWayland this is the only way to learn of a press on a window of
/// Wayland's, as the X server is not told of those, however it is asked.
class X11PressWatch final : public PressWatch, private QAbstractNativeEventFilter
{
public:
    X11PressWatch(const X11Connection& x11, std::function<void()> pressed);
    ~X11PressWatch() override;
    X11PressWatch(const X11PressWatch&) = delete;
    X11PressWatch& operator=(const X11PressWatch&) = delete;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

    const X11Connection& m_x11;
    std::function<void()> m_pressed;
    std::vector<xcb_window_t> m_windows; // one a screen
    xcb_colormap_t m_colors = XCB_NONE;
};

} // namespace brevlin
