#pragma once

#include "platform/freedesktop/shortcuts/keyboard_map.h"
#include "platform/freedesktop/x11/x11_connection.h"
#include "platform/global_shortcuts.h"
#include "platform/task_scheduler.h"

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brevlin {

/// Keys of which the X server lets this program alone hear, wherever the keyboard is. Each is taken for every
/// state of the keys that lock, and anew when the layout changes.
class X11KeyGrabs final : private QAbstractNativeEventFilter
{
public:
    /// `activated` is called with a startup identifier that tells when the key was pressed.
    X11KeyGrabs(TaskScheduler& scheduler, GlobalShortcuts::Observer observer);
    ~X11KeyGrabs() override;
    X11KeyGrabs(const X11KeyGrabs&) = delete;
    X11KeyGrabs& operator=(const X11KeyGrabs&) = delete;

    /// Whether the server has the keyboard. Those between Wayland and X11 programs take such requests, and
    /// hear nothing while the keyboard is with a program of Wayland's.
    bool isPossible() const { return m_isPossible; }
    void hold(const ShortcutKeys& keys);
    const ShortcutKeys& held() const { return m_keys; }
    GlobalShortcuts::Trouble trouble(ShortcutAction action) const { return m_troubles[action]; }
    std::optional<std::string> keyAt(std::uint32_t scanCode);

private:
    struct Grab
    {
        ShortcutAction action;
        std::uint8_t keycode;
        std::uint16_t modifiers; ///< without those that lock
    };

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    bool take(const xcb_generic_event_t& event);
    bool tellsOfLayout(const xcb_generic_event_t& event) const;
    void layoutMayHaveChanged();
    const KeyboardMap& map();
    KeyboardMap readMap() const;
    GlobalShortcuts::Trouble grab(ShortcutAction action, const KeyCombination& combination);
    bool grabOne(std::uint8_t keycode, std::uint16_t modifiers);
    void release(const Grab& grab);
    void releaseAll();

    TaskScheduler& m_scheduler;
    GlobalShortcuts::Observer m_observer;
    X11Connection m_x11;
    bool m_isPossible;
    std::uint8_t m_keyboardEvent = 0; // of the extension XKEYBOARD; 0 while nothing is held
    std::optional<KeyboardMap> m_map; // read when it is first needed
    ShortcutKeys m_keys;
    ForEachShortcut<GlobalShortcuts::Trouble> m_troubles;
    std::vector<Grab> m_grabs;
    std::uint8_t m_pressed = 0;     // keycode of the latest; 0 for none
    std::uint32_t m_releasedAt = 0; // milliseconds of the server's
    bool m_isDown = false;
    TaskHandle m_nextLook;
};

} // namespace brevlin
