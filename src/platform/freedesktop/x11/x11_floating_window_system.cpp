#include "platform/freedesktop/x11/x11_floating_window_system.h"

#include "platform/freedesktop/x11/x11_window_tree.h"

#include <QGuiApplication>
#include <QScreen>

#include <xcb/shape.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace brevlin {

namespace {

// Window managers tell of a new order before they have made it, or after.
constexpr Seconds firstLookDelay{0.03};
constexpr Seconds secondLookDelay{0.25};

constexpr std::string_view blurHint = "_KDE_NET_WM_BLUR_BEHIND_REGION";

xcb_window_t nativeWindow(FloatingWindowSystem::WindowId window)
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
                      std::vector<FloatingWindowSystem::ReservedArea>& areas)
{
    using enum FloatingWindowSystem::Edge;
    const auto number = [&](StrutNumber index) {
        constexpr std::uint32_t largest = 0xFFFF; // of the protocol's own coordinates
        return static_cast<int>(std::min(strut.at(index), largest));
    };
    const auto add = [&](FloatingWindowSystem::Edge edge, StrutNumber depth, StrutNumber start,
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
                                   ? FloatingWindowSystem::Rectangle{x, number(start), thickness, length}
                                   : FloatingWindowSystem::Rectangle{number(start), y, length, thickness}});
    };
    add(left, leftDepth, leftStart, leftEnd);
    add(right, rightDepth, rightStart, rightEnd);
    add(top, topDepth, topStart, topEnd);
    add(bottom, bottomDepth, bottomStart, bottomEnd);
}

std::vector<FloatingWindowSystem::Rectangle> nativeScreens()
{
    std::vector<FloatingWindowSystem::Rectangle> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QPoint origin = screen->geometry().topLeft(); // the same number in points and native pixels
        const QSize size = screen->geometry().size() * screen->devicePixelRatio();
        screens.push_back({origin.x(), origin.y(), size.width(), size.height()});
    }
    return screens;
}

bool contains(const std::vector<xcb_atom_t>& atoms, xcb_atom_t atom)
{
    return std::find(atoms.begin(), atoms.end(), atom) != atoms.end();
}

// Which side or corner, or the middle, stays where it is.
std::uint32_t bitGravity(const FloatingWindowSystem::Rectangle& from,
                         const FloatingWindowSystem::Rectangle& to)
{
    constexpr std::uint32_t gravities[3][3] = {
        {XCB_GRAVITY_NORTH_WEST, XCB_GRAVITY_NORTH, XCB_GRAVITY_NORTH_EAST},
        {XCB_GRAVITY_WEST, XCB_GRAVITY_CENTER, XCB_GRAVITY_EAST},
        {XCB_GRAVITY_SOUTH_WEST, XCB_GRAVITY_SOUTH, XCB_GRAVITY_SOUTH_EAST}};
    const auto third = [](int start, int length, int newStart, int newLength) {
        return start == newStart ? 0U : start + length == newStart + newLength ? 2U : 1U;
    };
    return gravities[third(from.y, from.height, to.y, to.height)][third(from.x, from.width, to.x, to.width)];
}

std::vector<xcb_rectangle_t>
protocolRectangles(const std::vector<FloatingWindowSystem::Rectangle>& rectangles)
{
    std::vector<xcb_rectangle_t> result;
    result.reserve(rectangles.size());
    for (const auto& rectangle : rectangles) {
        result.push_back({static_cast<std::int16_t>(rectangle.x), static_cast<std::int16_t>(rectangle.y),
                          static_cast<std::uint16_t>(rectangle.width),
                          static_cast<std::uint16_t>(rectangle.height)});
    }
    return result;
}

} // namespace

X11FloatingWindowSystem::X11FloatingWindowSystem(TaskScheduler& scheduler, QObject* parent)
    : QObject(parent), m_scheduler(scheduler)
{
    if (m_x11.isConnected()) {
        if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
            m_pointerSight = PointerSight::uncertain;
            m_inputExtension = m_x11.number("XInputExtension").value_or(0);
        }
        m_stackingProperties = {m_x11.atom("_NET_ACTIVE_WINDOW"), m_x11.atom("_NET_CLIENT_LIST_STACKING"),
                                m_x11.atom("_NET_CURRENT_DESKTOP"), m_x11.atom("_NET_SUPPORTING_WM_CHECK")};
        m_watchedProperties = {m_x11.atom("_NET_SUPPORTED"), m_x11.atom(blurHint),
                               m_x11.atom("_NET_WORKAREA")};
        qGuiApp->installNativeEventFilter(this);
        connect(&m_swayWorkArea, &SwayWorkArea::changed, this, [this] {
            if (m_changeHandler) {
                m_changeHandler();
            }
        });
    }
}

X11FloatingWindowSystem::~X11FloatingWindowSystem()
{
    if (m_x11.isConnected()) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

void X11FloatingWindowSystem::setChangeHandler(std::function<void()> handler)
{
    m_changeHandler = std::move(handler);
}

bool X11FloatingWindowSystem::nativeEventFilter(const QByteArray& eventType, void* message,
                                                qintptr* /*result*/)
{
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    m_pointer.follow(event, m_inputExtension, m_floating);
    const auto property = m_x11.changedRootProperty(event);
    if (property != XCB_ATOM_NONE && contains(m_stackingProperties, property)) {
        scheduleRaise();
    }
    const bool isUncovered = m_cover != XCB_WINDOW_NONE && X11Connection::goneWindow(event) == m_cover;
    if (isUncovered) {
        m_cover = XCB_WINDOW_NONE;
    }
    const bool isWatched = property != XCB_ATOM_NONE && contains(m_watchedProperties, property);
    if (m_changeHandler && (isWatched || isUncovered || m_x11.tellsOfCompositor(event))) {
        m_changeHandler();
    }
    return false;
}

void X11FloatingWindowSystem::prepareToShow(WindowId window)
{
    if (!m_x11.isConnected()) {
        return;
    }
    const auto native = nativeWindow(window);
    m_x11.setNumbers(native, m_x11.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
                     {m_x11.atom("_NET_WM_WINDOW_TYPE_NOTIFICATION")});
    // What no manager has framed Qt would walk up the tree of windows for, and wait, at every resize.
    m_x11.setNumbers(native, m_x11.atom("_NET_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, {0, 0, 0, 0});
    refuseFocus(native);
    m_swayWorkArea.ask();
}

// Qt lists WM_TAKE_FOCUS for every window: some managers would then offer it the keyboard with a click.
void X11FloatingWindowSystem::refuseFocus(xcb_window_t window)
{
    const auto name = m_x11.atom("WM_PROTOCOLS");
    auto protocols = m_x11.numbers(window, name);
    if (std::erase(protocols, m_x11.atom("WM_TAKE_FOCUS")) > 0) {
        m_x11.setNumbers(window, name, XCB_ATOM_ATOM, protocols);
    }
}

void X11FloatingWindowSystem::keepAbove(WindowId window)
{
    if (m_x11.isConnected()) {
        m_floating = nativeWindow(window);
        scheduleRaise();
    }
}

// Only the window manager's own doings are followed. Whoever else lies above, as a menu, a picture that is
// dragged or a screen locker, does so for a reason, and lockers raise themselves when they are covered: two
// that raise themselves would never come to rest.
void X11FloatingWindowSystem::scheduleRaise()
{
    if (m_floating == XCB_WINDOW_NONE) {
        return;
    }
    if (m_raiseTask) {
        m_hasOrderChangedSince = true;
        return;
    }
    m_raiseTask = m_scheduler.after(firstLookDelay, [this] {
        raise();
        m_raiseTask = m_scheduler.after(secondLookDelay, [this] {
            m_raiseTask.reset();
            raise();
            if (std::exchange(m_hasOrderChangedSince, false)) {
                scheduleRaise();
            }
        });
    });
}

void X11FloatingWindowSystem::raise() const
{
    const auto windows = topLevelWindows(m_x11);
    const bool isShown = std::any_of(windows.begin(), windows.end(), [this](const TopLevelWindow& window) {
        return window.id == m_floating;
    });
    if (!isShown) {
        return;
    }
    if (const auto managed = highestManagedAbove(windows, m_floating)) {
        m_x11.placeAbove(m_floating, *managed);
    }
}

// A compositor would show for a frame what the server has put there, and the picture at its old distance from
// the window's upper left corner.
void X11FloatingWindowSystem::prepareResize(WindowId window, const Rectangle& from, const Rectangle& to)
{
    if (!m_x11.isConnected()) {
        return;
    }
    constexpr std::uint32_t transparent = 0;
    const std::uint32_t values[] = {transparent, bitGravity(from, to)};
    xcb_change_window_attributes(m_x11.get(), nativeWindow(window), XCB_CW_BACK_PIXEL | XCB_CW_BIT_GRAVITY,
                                 values);
}

void X11FloatingWindowSystem::setShape(WindowId window, const Shape& shape)
{
    if (!m_x11.isConnected()) {
        return;
    }
    const auto cut = [this, window](xcb_shape_kind_t kind,
                                    const std::optional<std::vector<Rectangle>>& part) {
        if (!part) {
            xcb_shape_mask(m_x11.get(), XCB_SHAPE_SO_SET, kind, nativeWindow(window), 0, 0, XCB_PIXMAP_NONE);
            return;
        }
        const auto rectangles = protocolRectangles(*part);
        xcb_shape_rectangles(m_x11.get(), XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_UNSORTED,
                             nativeWindow(window), 0, 0, static_cast<std::uint32_t>(rectangles.size()),
                             rectangles.data());
    };
    cut(XCB_SHAPE_SK_BOUNDING, shape.seen);
    cut(XCB_SHAPE_SK_INPUT, shape.clicked);
    xcb_flush(m_x11.get());
}

bool X11FloatingWindowSystem::isScreenCovered()
{
    if (!m_x11.isConnected()) {
        return false;
    }
    if (m_cover == XCB_WINDOW_NONE) {
        if (const auto cover = coveringWindow(topLevelWindows(m_x11), m_floating, nativeScreens())) {
            // Its end may have come before it was watched, so it is looked at once more.
            m_x11.watchStructure(*cover);
            const auto still = coveringWindow(topLevelWindows(m_x11), m_floating, nativeScreens());
            m_cover = still.value_or(static_cast<xcb_window_t>(XCB_WINDOW_NONE));
            if (m_cover != *cover && m_cover != XCB_WINDOW_NONE) {
                m_x11.watchStructure(m_cover);
            }
        }
    }
    return m_cover != XCB_WINDOW_NONE;
}

bool X11FloatingWindowSystem::isComposited() const
{
    return m_x11.isConnected() && m_x11.isComposited();
}

// The compositor announces its blur by a property of that name on the root window.
bool X11FloatingWindowSystem::blurs() const
{
    if (!m_x11.isConnected() || !m_x11.isComposited()) {
        return false;
    }
    return m_x11.hasProperty(m_x11.root(), m_x11.atom(blurHint));
}

void X11FloatingWindowSystem::setBlurredPart(WindowId window, const std::vector<Rectangle>& part)
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

std::vector<FloatingWindowSystem::ReservedArea> X11FloatingWindowSystem::reservedAreas() const
{
    std::vector<ReservedArea> areas = m_swayWorkArea.reservedAreas();
    if (!m_x11.isConnected()) {
        return areas;
    }
    const auto windows = m_x11.numbers(m_x11.root(), m_x11.atom("_NET_CLIENT_LIST"));
    std::optional<xcb_rectangle_t> desktop;
    for (const auto& strut : m_x11.numbersOfEach(windows, m_x11.atom("_NET_WM_STRUT_PARTIAL"))) {
        if (strut.size() == strutSize) {
            desktop = desktop ? desktop : m_x11.rootArea();
            addReservedAreas(strut, desktop->width, desktop->height, areas);
        }
    }
    return areas;
}

} // namespace brevlin
