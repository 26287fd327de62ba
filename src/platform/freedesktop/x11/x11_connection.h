#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// What both window systems ask of the X server over Qt's own connection. Away from X11 there is no
/// connection, and nothing but isConnected() may be called, but what says so.
class X11Connection final
{
public:
    X11Connection();

    bool isConnected() const { return m_connection != nullptr; }
    xcb_connection_t* get() const { return m_connection; }
    xcb_window_t root() const { return m_root; }

    /// The number of an extension's first event, which means nothing where it has no events; nothing where
    /// the server lacks the extension.
    std::optional<std::uint8_t> firstEvent(std::string_view extension) const;
    /// The number that marks an extension's requests and generic events; nothing where the server lacks it.
    std::optional<std::uint8_t> number(std::string_view extension) const;
    xcb_atom_t atom(std::string_view name) const;
    /// The values of a property of 32-bit numbers; empty where the window has none.
    std::vector<std::uint32_t> numbers(xcb_window_t window, xcb_atom_t property) const;
    /// The same of many windows, asked all together.
    std::vector<std::vector<std::uint32_t>> numbersOfEach(const std::vector<xcb_window_t>& windows,
                                                          xcb_atom_t property) const;
    /// The value of a property of text, byte by byte; empty where the window has none.
    std::string text(xcb_window_t window, xcb_atom_t property) const;
    void setNumbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                    const std::vector<std::uint32_t>& values) const;
    bool hasProperty(xcb_window_t window, xcb_atom_t property) const;
    /// The address of the accessibility bus that the display names; empty where it names none, and away from
    /// X11.
    std::string accessibilityBus() const;
    /// The size of the whole desktop, native pixels.
    xcb_rectangle_t rootArea() const;
    /// A request to the window manager about a window.
    void sendToRoot(xcb_window_t window, xcb_atom_t type, const std::uint32_t (&data)[5]) const;

    /// Stacks a window right above another one below the same parent; nothing happens when one is gone.
    void placeAbove(xcb_window_t window, xcb_window_t sibling) const;
    /// Asks to be told when any client's window is unmapped or destroyed.
    void watchStructure(xcb_window_t window) const;
    /// The window that an event tells was unmapped or destroyed; none for any other event.
    static xcb_window_t goneWindow(const xcb_generic_event_t& event);

    /// Whether the window manager lists this hint among those that it follows.
    bool managerSupports(xcb_atom_t hint) const;
    bool isComposited() const;
    /// Whether an event tells that the compositor has come or gone.
    bool tellsOfCompositor(const xcb_generic_event_t& event) const;
    /// The property of the root window that an event tells has changed; none for any other event.
    xcb_atom_t changedRootProperty(const xcb_generic_event_t& event) const;

private:
    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = XCB_WINDOW_NONE;
    std::uint8_t m_selectionEvent = 0; // of the XFIXES extension; 0 where the server lacks it
};

} // namespace brevlin
