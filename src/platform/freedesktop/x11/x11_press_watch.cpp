#include "platform/freedesktop/x11/x11_press_watch.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <array>
#include <utility>

namespace brevlin {

namespace {

constexpr std::uint8_t depthWithAlpha = 32;

xcb_visualid_t visualWithAlpha(xcb_connection_t* connection)
{
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    auto depth = xcb_screen_allowed_depths_iterator(screen);
    for (; depth.rem > 0; xcb_depth_next(&depth)) {
        auto visual = xcb_depth_visuals_iterator(depth.data);
        if (depth.data->depth == depthWithAlpha && visual.rem > 0) {
            return visual.data->visual_id;
        }
    }
    return XCB_NONE;
}

} // namespace

X11PressWatch::X11PressWatch(const X11Connection& x11, std::function<void()> pressed)
    : m_x11(x11), m_pressed(std::move(pressed))
{
    xcb_connection_t* connection = x11.get();
    const xcb_visualid_t visual = visualWithAlpha(connection);
    if (visual == XCB_NONE) {
        return;
    }
    m_colors = xcb_generate_id(connection);
    xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, m_colors, x11.root(), visual);
    // Transparent, and out of the window manager's hands. The values stand in the order of their bits.
    constexpr std::uint32_t kinds = XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT |
                                    XCB_CW_EVENT_MASK | XCB_CW_COLORMAP;
    const std::array<std::uint32_t, 5> values{0, 0, 1, XCB_EVENT_MASK_BUTTON_PRESS, m_colors};
    for (const QScreen* screen : QGuiApplication::screens()) {
        // A pixel less than the screen: just its size would count as full-screen, from which bars hide, and
        // as a screen locker.
        const QPoint origin = screen->geometry().topLeft(); // the same number in points and native pixels
        const QSize size = screen->geometry().size() * screen->devicePixelRatio() - QSize(0, 1);
        m_windows.push_back(xcb_generate_id(connection));
        xcb_create_window(connection, depthWithAlpha, m_windows.back(), x11.root(),
                          static_cast<std::int16_t>(origin.x()), static_cast<std::int16_t>(origin.y()),
                          static_cast<std::uint16_t>(size.width()), static_cast<std::uint16_t>(size.height()),
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual, kinds, values.data());
        xcb_map_window(connection, m_windows.back());
    }
    xcb_flush(connection);
    qGuiApp->installNativeEventFilter(this);
}

X11PressWatch::~X11PressWatch()
{
    if (m_windows.empty()) {
        return;
    }
    qGuiApp->removeNativeEventFilter(this);
    for (const xcb_window_t window : m_windows) {
        xcb_destroy_window(m_x11.get(), window);
    }
    xcb_free_colormap(m_x11.get(), m_colors);
    xcb_flush(m_x11.get());
}

bool X11PressWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    constexpr std::uint8_t sentBit = 0x80;
    const bool isPress = (event.response_type & ~sentBit) == XCB_BUTTON_PRESS;
    const auto& press = reinterpret_cast<const xcb_button_press_event_t&>(event);
    if (isPress && std::find(m_windows.begin(), m_windows.end(), press.event) != m_windows.end()) {
        const auto pressed = m_pressed; // it may end this watch
        pressed();
        return true;
    }
    return false;
}

} // namespace brevlin
