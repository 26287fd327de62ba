#include "platform/freedesktop/x11/x11_connection.h"

#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <map>
#include <memory>

namespace brevlin {

namespace {

constexpr std::string_view compositorSelection = "_NET_WM_CM_S0";

struct FreeDeleter
{
    void operator()(void* pointer) const { std::free(pointer); }
};

template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeDeleter>;

// What every start asks for.
constexpr std::array commonAtoms{"AT_SPI_BUS",
                                 "_GTK_FRAME_EXTENTS",
                                 "_KDE_NET_WM_BLUR_BEHIND_REGION",
                                 "_NET_ACTIVE_WINDOW",
                                 "_NET_CLIENT_LIST",
                                 "_NET_CLIENT_LIST_STACKING",
                                 "_NET_CURRENT_DESKTOP",
                                 "_NET_SUPPORTED",
                                 "_NET_SUPPORTING_WM_CHECK",
                                 "_NET_WM_STRUT_PARTIAL",
                                 "_NET_WORKAREA",
                                 "_XSETTINGS_S0",
                                 "_XSETTINGS_SETTINGS"};

/// What names stand for as long as the server runs. Each answer wakes two threads, so each is asked for once,
/// and the common ones together.
class ServerNames final
{
public:
    struct Extension
    {
        std::uint8_t number = 0;
        std::uint8_t firstEvent = 0;
    };

    explicit ServerNames(xcb_connection_t* connection) : m_connection(connection)
    {
        std::array<xcb_intern_atom_cookie_t, commonAtoms.size()> cookies{};
        std::ranges::transform(commonAtoms, cookies.begin(),
                               [this](std::string_view name) { return ask(name); });
        for (std::size_t index = 0; index < commonAtoms.size(); ++index) {
            m_atoms.emplace(commonAtoms[index], answer(cookies[index]));
        }
    }

    xcb_connection_t* connection() const { return m_connection; }

    xcb_atom_t atom(std::string_view name)
    {
        auto known = m_atoms.find(name);
        if (known == m_atoms.end()) {
            known = m_atoms.emplace(name, answer(ask(name))).first;
        }
        return known->second;
    }

    std::optional<Extension> extension(std::string_view name)
    {
        auto known = m_extensions.find(name);
        if (known == m_extensions.end()) {
            const auto cookie =
                xcb_query_extension(m_connection, static_cast<std::uint16_t>(name.size()), name.data());
            const ReplyPointer<xcb_query_extension_reply_t> reply{
                xcb_query_extension_reply(m_connection, cookie, nullptr)};
            const auto extension = reply && reply->present != 0
                                       ? std::optional{Extension{reply->major_opcode, reply->first_event}}
                                       : std::nullopt;
            known = m_extensions.emplace(name, extension).first;
        }
        return known->second;
    }

private:
    xcb_intern_atom_cookie_t ask(std::string_view name) const
    {
        return xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    }

    xcb_atom_t answer(xcb_intern_atom_cookie_t cookie) const
    {
        const ReplyPointer<xcb_intern_atom_reply_t> reply{
            xcb_intern_atom_reply(m_connection, cookie, nullptr)};
        return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }

    xcb_connection_t* m_connection;
    std::map<std::string, xcb_atom_t, std::less<>> m_atoms;
    std::map<std::string, std::optional<Extension>, std::less<>> m_extensions;
};

// Of the main thread, as the connection is.
ServerNames& namesOf(xcb_connection_t* connection)
{
    static std::optional<ServerNames> names;
    if (!names || names->connection() != connection) {
        names.emplace(connection);
    }
    return *names;
}

xcb_get_property_cookie_t askForNumbers(xcb_connection_t* connection, xcb_window_t window,
                                        xcb_atom_t property)
{
    constexpr std::uint32_t longest = 4096;
    return xcb_get_property(connection, 0, window, property, XCB_ATOM_ANY, 0, longest);
}

std::vector<std::uint32_t> numbersIn(xcb_connection_t* connection, xcb_get_property_cookie_t cookie)
{
    constexpr int numberFormat = 32;
    const ReplyPointer<xcb_get_property_reply_t> reply{xcb_get_property_reply(connection, cookie, nullptr)};
    if (!reply || reply->format != numberFormat) {
        return {};
    }
    const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    const auto bytes = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    return {values, values + bytes / sizeof(std::uint32_t)};
}

std::uint8_t typeOf(const xcb_generic_event_t& event)
{
    constexpr std::uint8_t sentBit = 0x80;
    return static_cast<std::uint8_t>(event.response_type & ~sentBit);
}

} // namespace

X11Connection::X11Connection()
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // Qt's platform without a screen says that it is X11, and has no connection.
    if (x11 == nullptr || x11->connection() == nullptr) {
        return;
    }
    m_connection = x11->connection();
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    m_selectionEvent = firstEvent("XFIXES").value_or(0);
}

std::optional<std::uint8_t> X11Connection::firstEvent(std::string_view extension) const
{
    const auto known = namesOf(m_connection).extension(extension);
    return known ? std::optional{known->firstEvent} : std::nullopt;
}

std::optional<std::uint8_t> X11Connection::number(std::string_view extension) const
{
    const auto known = namesOf(m_connection).extension(extension);
    return known ? std::optional{known->number} : std::nullopt;
}

xcb_atom_t X11Connection::atom(std::string_view name) const
{
    return namesOf(m_connection).atom(name);
}

std::vector<std::uint32_t> X11Connection::numbers(xcb_window_t window, xcb_atom_t property) const
{
    return numbersIn(m_connection, askForNumbers(m_connection, window, property));
}

std::vector<std::vector<std::uint32_t>> X11Connection::numbersOfEach(const std::vector<xcb_window_t>& windows,
                                                                     xcb_atom_t property) const
{
    std::vector<xcb_get_property_cookie_t> cookies(windows.size());
    std::ranges::transform(windows, cookies.begin(), [this, property](xcb_window_t window) {
        return askForNumbers(m_connection, window, property);
    });
    std::vector<std::vector<std::uint32_t>> values(windows.size());
    std::ranges::transform(cookies, values.begin(), [this](xcb_get_property_cookie_t cookie) {
        return numbersIn(m_connection, cookie);
    });
    return values;
}

std::string X11Connection::text(xcb_window_t window, xcb_atom_t property) const
{
    constexpr std::uint32_t longest = 1024; // in fours of bytes
    constexpr int textFormat = 8;
    const auto cookie = xcb_get_property(m_connection, 0, window, property, XCB_ATOM_ANY, 0, longest);
    const ReplyPointer<xcb_get_property_reply_t> reply{xcb_get_property_reply(m_connection, cookie, nullptr)};
    if (!reply || reply->format != textFormat) {
        return {};
    }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::string X11Connection::accessibilityBus() const
{
    return isConnected() ? text(m_root, atom("AT_SPI_BUS")) : std::string();
}

bool X11Connection::hasProperty(xcb_window_t window, xcb_atom_t property) const
{
    const auto cookie = xcb_get_property(m_connection, 0, window, property, XCB_ATOM_ANY, 0, 0);
    const ReplyPointer<xcb_get_property_reply_t> reply{xcb_get_property_reply(m_connection, cookie, nullptr)};
    return reply && reply->type != XCB_ATOM_NONE;
}

xcb_rectangle_t X11Connection::rootArea() const
{
    const ReplyPointer<xcb_get_geometry_reply_t> reply{
        xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, m_root), nullptr)};
    return reply ? xcb_rectangle_t{0, 0, reply->width, reply->height} : xcb_rectangle_t{};
}

void X11Connection::setNumbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                               const std::vector<std::uint32_t>& values) const
{
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
    xcb_flush(m_connection);
}

void X11Connection::sendToRoot(xcb_window_t window, xcb_atom_t type, const std::uint32_t (&data)[5]) const
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

// Both go to windows of other programs, which may be gone by now: their errors are taken here, or Qt would
// report them.
void X11Connection::placeAbove(xcb_window_t window, xcb_window_t sibling) const
{
    const std::uint32_t values[] = {sibling, XCB_STACK_MODE_ABOVE};
    const auto cookie = xcb_configure_window_checked(
        m_connection, window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values);
    xcb_discard_reply(m_connection, cookie.sequence);
    xcb_flush(m_connection);
}

void X11Connection::watchStructure(xcb_window_t window) const
{
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    const auto cookie = xcb_change_window_attributes_checked(m_connection, window, XCB_CW_EVENT_MASK, &mask);
    xcb_discard_reply(m_connection, cookie.sequence);
    xcb_flush(m_connection);
}

xcb_window_t X11Connection::goneWindow(const xcb_generic_event_t& event)
{
    switch (typeOf(event)) {
    case XCB_UNMAP_NOTIFY:
        return reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window;
    case XCB_DESTROY_NOTIFY:
        return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window;
    default:
        return XCB_WINDOW_NONE;
    }
}

bool X11Connection::managerSupports(xcb_atom_t hint) const
{
    const auto hints = numbers(m_root, atom("_NET_SUPPORTED"));
    return std::find(hints.begin(), hints.end(), hint) != hints.end();
}

bool X11Connection::isComposited() const
{
    const auto cookie = xcb_get_selection_owner(m_connection, atom(compositorSelection));
    const ReplyPointer<xcb_get_selection_owner_reply_t> reply{
        xcb_get_selection_owner_reply(m_connection, cookie, nullptr)};
    return reply && reply->owner != XCB_WINDOW_NONE;
}

// Qt itself asks to be told of the selection's owner, so the events pass by here.
bool X11Connection::tellsOfCompositor(const xcb_generic_event_t& event) const
{
    struct SelectionNotify // of XFIXES, https://www.x.org/releases/current/doc/fixesproto/fixesproto.txt
    {
        std::uint8_t responseType;
        std::uint8_t subtype;
        std::uint16_t sequence;
        xcb_window_t window;
        xcb_window_t owner;
        xcb_atom_t selection;
    };
    return m_selectionEvent != 0 && typeOf(event) == m_selectionEvent &&
           reinterpret_cast<const SelectionNotify&>(event).selection == atom(compositorSelection);
}

xcb_atom_t X11Connection::changedRootProperty(const xcb_generic_event_t& event) const
{
    if (typeOf(event) != XCB_PROPERTY_NOTIFY) {
        return XCB_ATOM_NONE;
    }
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    return notify.window == m_root ? notify.atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace brevlin
