#pragma once

#include "platform/freedesktop/x11/x11_connection.h"
#include "platform/window_system.h"

#include <map>

namespace brevlin {

/// Puts small pictures on windows over Qt's own connection, so that they come in order with what Qt sends.
class X11Pixels final
{
public:
    explicit X11Pixels(const X11Connection& x11) : m_x11(x11) {}

    bool put(xcb_window_t window, const WindowSystem::Pixels& pixels);

private:
    std::uint8_t depthOf(xcb_window_t window);
    std::uint8_t askDepth(xcb_window_t window) const;

    const X11Connection& m_x11;
    std::map<xcb_window_t, std::uint8_t> m_depths; // 0 for a window of another form than ours; a few windows
};

} // namespace brevlin
