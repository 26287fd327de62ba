#include "platform/freedesktop/x11_window_system.h"

#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <memory>
#include <utility>

namespace brevlin {

namespace {

struct FreeDeleter
{
    void operator()(void* pointer) const { std::free(pointer); }
};

template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeDeleter>;

} // namespace

X11WindowSystem::X11WindowSystem(QObject* parent) : QObject(parent)
{
    if (auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        m_connection = x11->connection();
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        qGuiApp->installNativeEventFilter(this);
    }
}

X11WindowSystem::~X11WindowSystem()
{
    if (m_connection != nullptr) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

bool X11WindowSystem::supportsShadowMargins() const
{
    return m_connection != nullptr && managerSupports(atom("_GTK_FRAME_EXTENTS")) && isComposited();
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
    constexpr std::uint8_t sentBit = 0x80;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & ~sentBit) == XCB_PROPERTY_NOTIFY) {
        const auto* notify = reinterpret_cast<const xcb_property_notify_event_t*>(event);
        if (notify->window == m_root && notify->atom == atom("_NET_SUPPORTED")) {
            m_supportChangeHandler();
        }
    }
    return false;
}

void X11WindowSystem::setShadowMargins(WindowId window, const Extents& extents)
{
    if (m_connection == nullptr) {
        return;
    }
    const std::array<std::uint32_t, 4> values{extents.left, extents.right, extents.top, extents.bottom};
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window),
                        atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, values.size(), values.data());
    xcb_flush(m_connection);
}

bool X11WindowSystem::showWindowMenu(WindowId window, int x, int y)
{
    if (m_connection == nullptr || !managerSupports(atom("_GTK_SHOW_WINDOW_MENU"))) {
        return false;
    }
    // The press that opened it still holds the pointer, which the manager's menu needs.
    xcb_ungrab_pointer(m_connection, XCB_CURRENT_TIME);
    sendToRoot(static_cast<xcb_window_t>(window), atom("_GTK_SHOW_WINDOW_MENU"),
               {0, static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 0, 0});
    return true;
}

void X11WindowSystem::activate(WindowId window, const std::string& token)
{
    if (m_connection == nullptr) {
        return;
    }
    constexpr std::uint32_t fromApplication = 1;
    constexpr std::uint32_t fromUser = 2;
    // With the time of the user's action the manager can judge whether it is the newest one.
    const auto time = startupIdentifierTime(token);
    sendToRoot(static_cast<xcb_window_t>(window), atom("_NET_ACTIVE_WINDOW"),
               {time ? fromApplication : fromUser, time.value_or(XCB_CURRENT_TIME), 0, 0, 0});
}

void X11WindowSystem::sendToRoot(xcb_window_t window, xcb_atom_t type, const std::uint32_t (&data)[5]) const
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy(std::begin(data), std::end(data), std::begin(message.data.data32));
    xcb_send_event(m_connection, 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(m_connection);
}

xcb_atom_t X11WindowSystem::atom(std::string_view name) const
{
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const ReplyPointer<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(m_connection, cookie, nullptr)};
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

bool X11WindowSystem::managerSupports(xcb_atom_t hint) const
{
    constexpr std::uint32_t longest = 1024;
    const auto cookie =
        xcb_get_property(m_connection, 0, m_root, atom("_NET_SUPPORTED"), XCB_ATOM_ATOM, 0, longest);
    const ReplyPointer<xcb_get_property_reply_t> reply{xcb_get_property_reply(m_connection, cookie, nullptr)};
    if (!reply || reply->format != 32) {
        return false;
    }
    const auto* hints = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    const auto count =
        static_cast<std::size_t>(xcb_get_property_value_length(reply.get())) / sizeof(xcb_atom_t);
    return std::find(hints, hints + count, hint) != hints + count;
}

bool X11WindowSystem::isComposited() const
{
    if (m_connection == nullptr) {
        return true; // other platforms always are
    }
    const auto cookie = xcb_get_selection_owner(m_connection, atom("_NET_WM_CM_S0"));
    const ReplyPointer<xcb_get_selection_owner_reply_t> reply{
        xcb_get_selection_owner_reply(m_connection, cookie, nullptr)};
    return reply && reply->owner != XCB_WINDOW_NONE;
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
