#include "platform/freedesktop/x11/x11_window_system.h"

#include "platform/freedesktop/sway/sway_focus.h"
#include "platform/freedesktop/x11/x11_press_watch.h"

#include <QGuiApplication>

#include <charconv>
#include <utility>

namespace brevlin {

X11WindowSystem::X11WindowSystem(QObject* parent) : QObject(parent)
{
    if (m_x11.isConnected()) {
        qGuiApp->installNativeEventFilter(this);
    }
}

X11WindowSystem::~X11WindowSystem()
{
    if (m_x11.isConnected()) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

bool X11WindowSystem::supportsShadowMargins() const
{
    return m_x11.isConnected() && m_x11.managerSupports(m_x11.atom("_GTK_FRAME_EXTENTS")) &&
           m_x11.isComposited();
}

bool X11WindowSystem::isComposited() const
{
    return !m_x11.isConnected() || m_x11.isComposited(); // other platforms always are
}

void X11WindowSystem::setSupportChangeHandler(std::function<void()> handler)
{
    m_supportChangeHandler = std::move(handler);
}

// Qt watches the root window's properties itself, so their changes pass by here.
bool X11WindowSystem::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    if (eventType != "xcb_generic_event_t" || !m_supportChangeHandler) {
        return false;
    }
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    const auto property = m_x11.changedRootProperty(event);
    if ((property != XCB_ATOM_NONE && property == m_x11.atom("_NET_SUPPORTED")) ||
        m_x11.tellsOfCompositor(event)) {
        m_supportChangeHandler();
    }
    return false;
}

void X11WindowSystem::setShadowMargins(WindowId window, const Extents& extents)
{
    if (!m_x11.isConnected()) {
        return;
    }
    m_x11.setNumbers(static_cast<xcb_window_t>(window), m_x11.atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL,
                     {extents.left, extents.right, extents.top, extents.bottom});
}

std::unique_ptr<PressWatch> X11WindowSystem::watchPresses(std::function<void()> pressed)
{
    if (!m_x11.isConnected()) {
        return nullptr;
    }
    return std::make_unique<X11PressWatch>(m_x11, std::move(pressed));
}

bool X11WindowSystem::putPixels(WindowId window, const Pixels& pixels)
{
    return m_pixels.put(static_cast<xcb_window_t>(window), pixels);
}

bool X11WindowSystem::showWindowMenu(WindowId window, int x, int y)
{
    if (!m_x11.isConnected() || !m_x11.managerSupports(m_x11.atom("_GTK_SHOW_WINDOW_MENU"))) {
        return false;
    }
    // The press that opened it still holds the pointer, which the manager's menu needs.
    xcb_ungrab_pointer(m_x11.get(), XCB_CURRENT_TIME);
    m_x11.sendToRoot(static_cast<xcb_window_t>(window), m_x11.atom("_GTK_SHOW_WINDOW_MENU"),
                     {0, static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 0, 0});
    return true;
}

void X11WindowSystem::activate(WindowId window, const std::string& token)
{
    if (!m_x11.isConnected()) {
        return;
    }
    const auto native = static_cast<xcb_window_t>(window);
    if (!token.empty()) {
        // Whoever gave out the token knows by it what the user did and when, be it Wayland's or X11's.
        xcb_change_property(m_x11.get(), XCB_PROP_MODE_REPLACE, native, m_x11.atom("_NET_STARTUP_ID"),
                            m_x11.atom("UTF8_STRING"), 8, static_cast<std::uint32_t>(token.size()),
                            token.data());
    }
    // As what the user does, which it is: some managers only mark a window as urgent that asks by itself.
    // With the time of the user's action the manager can judge whether it is the newest one.
    constexpr std::uint32_t fromUser = 2;
    m_x11.sendToRoot(native, m_x11.atom("_NET_ACTIVE_WINDOW"),
                     {fromUser, startupIdentifierTime(token).value_or(XCB_CURRENT_TIME), 0, 0, 0});
    askSwayToFocus("id=" + QByteArray::number(native));
}

std::optional<std::uint32_t> startupIdentifierTime(std::string_view identifier)
{
    constexpr std::string_view marker = "_TIME";
    const std::size_t position = identifier.rfind(marker);
    if (position == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view digits = identifier.substr(position + marker.size());
    std::uint32_t time = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), time);
    return error == std::errc{} && end == digits.data() + digits.size() ? std::optional{time} : std::nullopt;
}

} // namespace brevlin
