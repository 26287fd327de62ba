#include "platform/freedesktop/shortcuts/x11_key_grabs.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

namespace brevlin {

namespace {

using Trouble = GlobalShortcuts::Trouble;

// A key that stays down repeats as if it was let go and pressed at once, sooner than any finger could.
constexpr std::uint32_t longestRepetitionGap = 3; // milliseconds
// A change of the layout is told several times over.
constexpr Seconds untilLayoutSettles{0.1};

struct FreeDeleter
{
    void operator()(void* pointer) const { std::free(pointer); }
};

template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeDeleter>;

// Older servers for Wayland have no extension of that name, and newer ones may give their screens the names
// of the compositor. A session of Wayland's is none of X11's, whatever the server is.
bool isOfWayland(const X11Connection& x11)
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland") ||
           x11.firstEvent("XWAYLAND").has_value() ||
           std::ranges::any_of(QGuiApplication::screens(), [](const QScreen* screen) {
               return screen->name().startsWith(QLatin1String("XWAYLAND"));
           });
}

std::uint8_t typeOf(const xcb_generic_event_t& event)
{
    constexpr std::uint8_t sentBit = 0x80;
    return static_cast<std::uint8_t>(event.response_type & ~sentBit);
}

} // namespace

X11KeyGrabs::X11KeyGrabs(TaskScheduler& scheduler, GlobalShortcuts::Observer observer)
    : m_scheduler(scheduler)
    , m_observer(std::move(observer))
    , m_isPossible(m_x11.isConnected() && !isOfWayland(m_x11))
{}

X11KeyGrabs::~X11KeyGrabs()
{
    hold({});
}

void X11KeyGrabs::hold(const ShortcutKeys& keys)
{
    const bool wasHolding = m_isPossible && m_keys != ShortcutKeys{};
    releaseAll();
    m_keys = keys;
    m_troubles = {};
    const bool isHolding = m_isPossible && keys != ShortcutKeys{};
    if (isHolding != wasHolding) {
        isHolding ? qGuiApp->installNativeEventFilter(this) : qGuiApp->removeNativeEventFilter(this);
        m_keyboardEvent = isHolding ? m_x11.firstEvent("XKEYBOARD").value_or(0) : 0;
        m_map.reset(); // what happens to it is heard only while keys are held
        m_nextLook.reset();
        m_pressed = 0;
        m_isDown = false;
    }
    for (const ShortcutAction action : allCases<ShortcutAction>()) {
        if (isHolding && keys[action]) {
            m_troubles[action] = grab(action, *keys[action]);
        }
    }
}

Trouble X11KeyGrabs::grab(ShortcutAction action, const KeyCombination& combination)
{
    const auto modifiers = map().bits(combination.modifiers());
    const auto keycodes = map().keycodesOf(combination.key());
    if (!modifiers || keycodes.empty()) {
        return Trouble::absent;
    }
    const std::size_t before = m_grabs.size();
    for (const std::uint8_t keycode : keycodes) {
        m_grabs.push_back({action, keycode, *modifiers});
        if (!grabOne(keycode, *modifiers)) {
            while (m_grabs.size() > before) {
                release(m_grabs.back());
                m_grabs.pop_back();
            }
            return Trouble::taken;
        }
    }
    return Trouble::none;
}

// The server refuses what another program has.
bool X11KeyGrabs::grabOne(std::uint8_t keycode, std::uint16_t modifiers)
{
    std::vector<xcb_void_cookie_t> cookies;
    for (const std::uint16_t locks : map().lockStates()) {
        cookies.push_back(xcb_grab_key_checked(m_x11.get(), 0, m_x11.root(),
                                               static_cast<std::uint16_t>(modifiers | locks), keycode,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    bool isGranted = true;
    for (const xcb_void_cookie_t& cookie : cookies) {
        const ReplyPointer<xcb_generic_error_t> error{xcb_request_check(m_x11.get(), cookie)};
        isGranted = isGranted && !error;
    }
    return isGranted;
}

void X11KeyGrabs::release(const Grab& grab)
{
    for (const std::uint16_t locks : map().lockStates()) {
        xcb_ungrab_key(m_x11.get(), grab.keycode, m_x11.root(),
                       static_cast<std::uint16_t>(grab.modifiers | locks));
    }
    xcb_flush(m_x11.get());
}

void X11KeyGrabs::releaseAll()
{
    for (const Grab& grab : m_grabs) {
        release(grab);
    }
    m_grabs.clear();
}

bool X11KeyGrabs::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    return eventType == "xcb_generic_event_t" && take(*static_cast<const xcb_generic_event_t*>(message));
}

// Whether nobody else is to see the event.
bool X11KeyGrabs::take(const xcb_generic_event_t& event)
{
    const std::uint8_t type = typeOf(event);
    if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE) {
        if (tellsOfLayout(event)) {
            m_nextLook = m_scheduler.after(untilLayoutSettles, [this] { layoutMayHaveChanged(); });
        }
        return false;
    }
    const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
    if (key.event != m_x11.root()) {
        return false; // one of ours that has the keyboard
    }
    const auto held = static_cast<std::uint16_t>(key.state & map().modifierBits());
    const auto grab = std::ranges::find_if(
        m_grabs, [&](const Grab& each) { return each.keycode == key.detail && each.modifiers == held; });
    if (type == XCB_KEY_RELEASE) {
        const bool isOurs = m_pressed == key.detail;
        m_releasedAt = isOurs ? key.time : m_releasedAt;
        m_isDown = m_isDown && !isOurs;
        return isOurs;
    }
    if (grab == m_grabs.end()) {
        return false;
    }
    const bool isSame = std::exchange(m_pressed, key.detail) == key.detail;
    const bool isRepeated = isSame && (m_isDown || key.time - m_releasedAt <= longestRepetitionGap);
    m_isDown = true;
    if (!isRepeated) {
        m_observer.activated(grab->action, "brevlin_TIME" + std::to_string(key.time));
    }
    return true;
}

bool X11KeyGrabs::tellsOfLayout(const xcb_generic_event_t& event) const
{
    // https://www.x.org/releases/current/doc/kbproto/xkbproto.html
    constexpr std::uint8_t newKeyboardNotify = 0;
    constexpr std::uint8_t mapNotify = 1;
    if (typeOf(event) == XCB_MAPPING_NOTIFY) {
        return true;
    }
    return m_keyboardEvent != 0 && typeOf(event) == m_keyboardEvent &&
           (event.pad0 == newKeyboardNotify || event.pad0 == mapNotify);
}

void X11KeyGrabs::layoutMayHaveChanged()
{
    m_nextLook.reset();
    KeyboardMap now = readMap();
    if (m_map == now) {
        return;
    }
    releaseAll(); // as they were taken
    m_map = std::move(now);
    hold(ShortcutKeys(m_keys));
    m_observer.changed();
}

std::optional<std::string> X11KeyGrabs::keyAt(std::uint32_t scanCode)
{
    if (!m_isPossible) {
        return std::nullopt;
    }
    return m_grabs.empty() ? readMap().keyAt(scanCode) : map().keyAt(scanCode);
}

const KeyboardMap& X11KeyGrabs::map()
{
    if (!m_map) {
        m_map = readMap();
    }
    return *m_map;
}

KeyboardMap X11KeyGrabs::readMap() const
{
    const xcb_setup_t* setup = xcb_get_setup(m_x11.get());
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto symbolsCookie = xcb_get_keyboard_mapping(m_x11.get(), setup->min_keycode, count);
    const auto modifiersCookie = xcb_get_modifier_mapping(m_x11.get());
    const ReplyPointer<xcb_get_keyboard_mapping_reply_t> symbols{
        xcb_get_keyboard_mapping_reply(m_x11.get(), symbolsCookie, nullptr)};
    const ReplyPointer<xcb_get_modifier_mapping_reply_t> modifiers{
        xcb_get_modifier_mapping_reply(m_x11.get(), modifiersCookie, nullptr)};
    if (!symbols || !modifiers) {
        return {};
    }
    const xcb_keysym_t* firstSymbol = xcb_get_keyboard_mapping_keysyms(symbols.get());
    const xcb_keycode_t* firstKeycode = xcb_get_modifier_mapping_keycodes(modifiers.get());
    return {setup->min_keycode,
            symbols->keysyms_per_keycode,
            {firstSymbol, firstSymbol + xcb_get_keyboard_mapping_keysyms_length(symbols.get())},
            modifiers->keycodes_per_modifier,
            {firstKeycode, firstKeycode + xcb_get_modifier_mapping_keycodes_length(modifiers.get())}};
}

} // namespace brevlin
