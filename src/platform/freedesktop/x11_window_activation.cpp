#include "platform/freedesktop/x11_window_activation.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstring>
#include <memory>

namespace brevlin {

namespace {

struct FreeDeleter
{
    void operator()(void* pointer) const { std::free(pointer); }
};

xcb_atom_t atom(xcb_connection_t* connection, const char* name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, FreeDeleter> reply{
        xcb_intern_atom_reply(connection, cookie, nullptr)};
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace

std::optional<std::uint32_t> startupIdentifierTime(const QString& identifier)
{
    const QLatin1String marker{"_TIME"};
    const auto position = identifier.lastIndexOf(marker);
    if (position < 0) {
        return std::nullopt;
    }
    bool isNumber = false;
    const uint time = identifier.mid(position + marker.size()).toUInt(&isNumber);
    return isNumber ? std::optional<std::uint32_t>{time} : std::nullopt;
}

void activateWindow(QWindow& window, std::optional<std::uint32_t> userTime)
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr) {
        window.requestActivate();
        return;
    }
    constexpr std::uint32_t fromApplication = 1;
    constexpr std::uint32_t fromUser = 2;
    xcb_connection_t* connection = x11->connection();
    const auto windowId = static_cast<xcb_window_t>(window.winId());
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = windowId;
    message.type = atom(connection, "_NET_ACTIVE_WINDOW");
    message.data.data32[0] = userTime ? fromApplication : fromUser;
    message.data.data32[1] = userTime.value_or(XCB_CURRENT_TIME);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_send_event(connection, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection);
}

} // namespace brevlin
