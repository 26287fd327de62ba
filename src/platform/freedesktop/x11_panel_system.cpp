#include "platform/freedesktop/x11_panel_system.h"

#include <QGuiApplication>

#include <algorithm>
#include <string_view>
#include <utility>

namespace brevlin {

namespace {

constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
constexpr std::string_view blurHint = "_KDE_NET_WM_BLUR_BEHIND_REGION";

xcb_window_t nativeWindow(FloatingPanelSystem::WindowId window)
{
    return static_cast<xcb_window_t>(window);
}

// The numbers of _NET_WM_STRUT_PARTIAL: how far a panel reaches from each edge of the desktop, and along
// which part of that edge.
enum StrutNumber {
    leftDepth,
    rightDepth,
    topDepth,
    bottomDepth,
    leftStart,
    leftEnd,
    rightStart,
    rightEnd,
    topStart,
    topEnd,
    bottomStart,
    bottomEnd,
    strutSize,
};

void addReservedAreas(const std::vector<std::uint32_t>& strut, int width, int height,
                      std::vector<FloatingPanelSystem::ReservedArea>& areas)
{
    using enum FloatingPanelSystem::Edge;
    const auto number = [&](StrutNumber index) {
        constexpr std::uint32_t largest = 0xFFFF; // of the protocol's own coordinates
        return static_cast<int>(std::min(strut.at(index), largest));
    };
    const auto add = [&](FloatingPanelSystem::Edge edge, StrutNumber depth, StrutNumber start,
                         StrutNumber end) {
        const int thickness = number(depth);
        const int length = number(end) - number(start) + 1;
        if (thickness == 0) {
            return;
        }
        const int x = edge == right ? width - thickness : 0;
        const int y = edge == bottom ? height - thickness : 0;
        const bool isColumn = edge == left || edge == right;
        areas.push_back({edge, isColumn
                                   ? FloatingPanelSystem::Rectangle{x, number(start), thickness, length}
                                   : FloatingPanelSystem::Rectangle{number(start), y, length, thickness}});
    };
    add(left, leftDepth, leftStart, leftEnd);
    add(right, rightDepth, rightStart, rightEnd);
    add(top, topDepth, topStart, topEnd);
    add(bottom, bottomDepth, bottomStart, bottomEnd);
}

} // namespace

X11PanelSystem::X11PanelSystem(QObject* parent) : QObject(parent)
{
    if (m_x11.isConnected()) {
        m_watchedProperties = {m_x11.atom("_NET_SUPPORTED"), m_x11.atom(blurHint),
                               m_x11.atom("_NET_WORKAREA")};
        qGuiApp->installNativeEventFilter(this);
    }
}

X11PanelSystem::~X11PanelSystem()
{
    if (m_x11.isConnected()) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

void X11PanelSystem::setChangeHandler(std::function<void()> handler)
{
    m_changeHandler = std::move(handler);
}

bool X11PanelSystem::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    if (eventType != "xcb_generic_event_t" || !m_changeHandler) {
        return false;
    }
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    const auto property = m_x11.changedRootProperty(event);
    const bool isWatched = property != XCB_ATOM_NONE &&
                           std::find(m_watchedProperties.begin(), m_watchedProperties.end(), property) !=
                               m_watchedProperties.end();
    if (isWatched || m_x11.tellsOfCompositor(event)) {
        m_changeHandler();
    }
    return false;
}

// A notification lies above maximised and full-screen windows with every common manager, and no manager gives
// it the keyboard by itself.
void X11PanelSystem::prepareToShow(WindowId window)
{
    if (!m_x11.isConnected()) {
        return;
    }
    const auto native = nativeWindow(window);
    m_x11.setNumbers(native, m_x11.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
                     {m_x11.atom("_NET_WM_WINDOW_TYPE_NOTIFICATION")});
    m_x11.setNumbers(native, m_x11.atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, {everyDesktop});
    m_x11.setNumbers(native, m_x11.atom("_NET_WM_STATE"), XCB_ATOM_ATOM,
                     {m_x11.atom("_NET_WM_STATE_ABOVE"), m_x11.atom("_NET_WM_STATE_STICKY"),
                      m_x11.atom("_NET_WM_STATE_SKIP_TASKBAR"), m_x11.atom("_NET_WM_STATE_SKIP_PAGER")});
    refuseFocus(native);
}

// Qt lists WM_TAKE_FOCUS for every window: some managers would then offer it the keyboard with a click.
void X11PanelSystem::refuseFocus(xcb_window_t window)
{
    const auto name = m_x11.atom("WM_PROTOCOLS");
    auto protocols = m_x11.numbers(window, name);
    if (std::erase(protocols, m_x11.atom("WM_TAKE_FOCUS")) > 0) {
        m_x11.setNumbers(window, name, XCB_ATOM_ATOM, protocols);
    }
}

void X11PanelSystem::keepAbove(WindowId window)
{
    if (!m_x11.isConnected()) {
        return;
    }
    constexpr std::uint32_t add = 1;
    constexpr std::uint32_t fromApplication = 1;
    const auto native = nativeWindow(window);
    const auto state = m_x11.atom("_NET_WM_STATE");
    m_x11.sendToRoot(
        native, state,
        {add, m_x11.atom("_NET_WM_STATE_ABOVE"), m_x11.atom("_NET_WM_STATE_STICKY"), fromApplication, 0});
    m_x11.sendToRoot(native, state,
                     {add, m_x11.atom("_NET_WM_STATE_SKIP_TASKBAR"), m_x11.atom("_NET_WM_STATE_SKIP_PAGER"),
                      fromApplication, 0});
    m_x11.sendToRoot(native, m_x11.atom("_NET_WM_DESKTOP"), {everyDesktop, fromApplication, 0, 0, 0});
}

bool X11PanelSystem::isComposited() const
{
    return m_x11.isConnected() && m_x11.isComposited();
}

// The compositor announces its blur by a property of that name on the root window.
bool X11PanelSystem::blurs() const
{
    if (!m_x11.isConnected() || !m_x11.isComposited()) {
        return false;
    }
    return m_x11.hasProperty(m_x11.root(), m_x11.atom(blurHint));
}

void X11PanelSystem::setBlurredPart(WindowId window, const std::vector<Rectangle>& part)
{
    if (!m_x11.isConnected()) {
        return;
    }
    std::vector<std::uint32_t> numbers;
    for (const Rectangle& rectangle : part) {
        for (const int number : {rectangle.x, rectangle.y, rectangle.width, rectangle.height}) {
            numbers.push_back(static_cast<std::uint32_t>(number));
        }
    }
    m_x11.setNumbers(nativeWindow(window), m_x11.atom(blurHint), XCB_ATOM_CARDINAL, numbers);
}

std::vector<FloatingPanelSystem::ReservedArea> X11PanelSystem::reservedAreas() const
{
    std::vector<ReservedArea> areas;
    if (!m_x11.isConnected()) {
        return areas;
    }
    const auto size = m_x11.rootArea();
    const auto partial = m_x11.atom("_NET_WM_STRUT_PARTIAL");
    for (const xcb_window_t window : m_x11.numbers(m_x11.root(), m_x11.atom("_NET_CLIENT_LIST"))) {
        const auto strut = m_x11.numbers(window, partial);
        if (strut.size() == strutSize) {
            addReservedAreas(strut, size.width, size.height, areas);
        }
    }
    return areas;
}

} // namespace brevlin
