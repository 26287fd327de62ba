#pragma once

#include <xcb/xcb.h>

#include <cstdint>

namespace brevlin {

/// Whether XWayland will tell a window that the pointer leaves it for one of Wayland's. It has two devices
/// for one pointer, lets it enter by the first and tells that it leaves only where the first has moved it
/// last, which it does where the compositor tells of relative motion, too: for a mouse, not for a pointer
/// whose places are absolute, as in a virtual machine.
class XwaylandPointer final
{
public:
    /// The extension is XInput's number.
    void follow(const xcb_generic_event_t& event, std::uint8_t extension, xcb_window_t window);
    /// As far as the window has seen it enter and move.
    bool isLeavingTold() const { return m_enteredBy != 0 && m_enteredBy == m_movedBy; }

private:
    std::uint16_t m_enteredBy = 0;
    std::uint16_t m_movedBy = 0;
};

} // namespace brevlin
