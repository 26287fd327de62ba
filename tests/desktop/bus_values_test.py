"""Programs on the bus that send what nobody should send: calls, signals and answers of the wrong types."""

import os
import threading

import dbus
import dbus.lowlevel
import dbus.mainloop.glib
from gi.repository import GLib

from harness import DesktopTest, main, wait_for

SESSION, SYSTEM = "DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"
BREVLIN = "com.quillmark.Brevlin"
ITEM, MENU, APPLICATION = "/StatusNotifierItem", "/StatusNotifierItem/Menu", "/com/quillmark/Brevlin"
INVALID_ARGUMENTS = "org.freedesktop.DBus.Error.InvalidArgs"

# What is called: path, interface and the methods with their right signatures.
METHODS = (
    (APPLICATION, "org.freedesktop.Application", {"Activate": "a{sv}", "Open": "asa{sv}", "ActivateAction": "sava{sv}"}),
    (ITEM, "org.kde.StatusNotifierItem", {"ContextMenu": "ii", "Activate": "ii", "SecondaryActivate": "ii",
                                          "Scroll": "is"}),
    (MENU, "com.canonical.dbusmenu", {"GetLayout": "iias", "GetGroupProperties": "aias", "GetProperty": "is",
                                      "Event": "isvu", "EventGroup": "a(isvu)", "AboutToShow": "i",
                                      "AboutToShowGroup": "ai"}),
    (ITEM, dbus.PROPERTIES_IFACE, {"Get": "ss", "GetAll": "s", "Set": "ssv"}),
    (MENU, dbus.PROPERTIES_IFACE, {"Get": "ss", "GetAll": "s", "Set": "ssv"}),
)

LOGIN, SESSION_PATH = "org.freedesktop.login1", "/org/freedesktop/login1/session/c1"
NOTIFICATIONS, WATCHER = "org.freedesktop.Notifications", "org.kde.StatusNotifierWatcher"
PORTAL = "org.freedesktop.portal.Settings"
SAVERS = {f"org.{desktop}.ScreenSaver": f"/org/{desktop}/ScreenSaver"
          for desktop in ("freedesktop", "gnome", "cinnamon", "mate")}

# What is listened to: the bus, the path, the interface and the signals.
SIGNALS = (
    (SESSION, "/org/freedesktop/Notifications", NOTIFICATIONS, ("ActionInvoked", "ActivationToken",
                                                               "NotificationClosed")),
    (SESSION, "/org/freedesktop/Notifications", dbus.PROPERTIES_IFACE, ("PropertiesChanged",)),
    (SESSION, "/org/freedesktop/portal/desktop", PORTAL, ("SettingChanged",)),
    (SESSION, "/StatusNotifierWatcher", WATCHER, ("StatusNotifierHostRegistered", "StatusNotifierHostUnregistered")),
    *((SESSION, path, name, ("ActiveChanged",)) for name, path in SAVERS.items()),
    (SYSTEM, "/org/freedesktop/login1", f"{LOGIN}.Manager", ("PrepareForSleep",)),
    (SYSTEM, SESSION_PATH, f"{LOGIN}.Session", ("Lock", "Unlock")),
    (SYSTEM, SESSION_PATH, dbus.PROPERTIES_IFACE, ("PropertiesChanged",)),
)

# Whose names the test takes.
NAMES = {SESSION: (NOTIFICATIONS, WATCHER, "org.freedesktop.portal.Desktop", *SAVERS), SYSTEM: (LOGIN,)}

# Questions that others follow only where they are answered rightly.
FIRST_ANSWERS = {"GetCapabilities": ("as", [["body", "actions"]]), "GetServerInformation": ("ssss", ["dunst", "", "", ""]),
                 "GetSession": ("o", [SESSION_PATH])}

deep = dbus.Int32(1, variant_level=30)
event = (1, "hovered", deep, 0)

# Bodies: signature and values. For a method or a signal with such a signature its values are odd all the same.
BODIES = (
    ("", []), ("b", [True]), ("y", [7]), ("i", [-2147483648]), ("u", [4294967295]), ("x", [-1]), ("d", [float("nan")]),
    ("s", ["x" * 100000]), ("o", ["/"]), ("g", ["a{sv}"]), ("h", [0]), ("v", [deep]), ("vvvv", [deep] * 4),
    ("ii", [2147483647, -2147483648]), ("us", [1, "default"]), ("su", ["1", 1]), ("uu", [4294967295, 4294967295]),
    ("uus", [1, 1, "default"]), ("ss", ["", ""]), ("ssss", [""] * 4), ("is", [-1, "label"]), ("ssv", ["", "", deep]),
    ("isvu", event), ("isv", event[:3]), ("(isvu)", [event]), ("a(isvu)", [[event] * 10000]), ("a(isv)", [[event[:3]]]),
    ("a(is)", [[(1, "clicked")]]), ("a(siuv)", [[("clicked", 0, 0, deep)]]), ("a{sv}", [{
        "desktop-startup-id": deep, "activation-token": dbus.Array([1], signature="i")}]),
    ("a{ss}", [{"desktop-startup-id": "1"}]), ("a{is}", [{1: "x"}]), ("a{sa{sv}}", [{
        "org.freedesktop.appearance": {"color-scheme": deep}, "org.kde.kdeglobals.KDE": {
            "AnimationDurationFactor": dbus.Array([deep], signature="v")}}]),
    ("a{sa{ss}}", [{"org.freedesktop.appearance": {"color-scheme": "1"}}]), ("as", [[""] * 10000]), ("av", [[deep] * 100]),
    ("ai", [list(range(100000))]), ("aias", [[], []]), ("aiai", [[1], [1]]), ("iias", [-1, -2147483648, []]),
    ("iiai", [0, -1, [1]]), ("asa{sv}", [["x"], {}]), ("sava{sv}", ["x", [deep], {}]), ("sasa{sv}", ["x", [], {}]),
    ("ay", [bytes(1000000)]), ("aaaaaaaai", [[[[[[[[[1]]]]]]]]]), ("sa{sv}as", [f"{LOGIN}.Session", {"LockedHint": deep}, []]),
    ("sa{ss}as", [f"{LOGIN}.Session", {"LockedHint": "yes"}, []]), ("sas", [f"{LOGIN}.Session", ["LockedHint"]]),
)


def filled(message, body):
    signature, values = body
    message.append(*values, signature=signature)
    return message


class Impostor:
    """Has the names of the desktop's services, and answers each question with the same body."""

    def __init__(self, desktop, first_answers):
        self.answer, self.first_answers = ("v", [deep]), first_answers
        self.asked = set()
        self.connections = {}
        dbus.mainloop.glib.threads_init()
        for variable, names in NAMES.items():
            connection = dbus.bus.BusConnection(desktop.environment[variable],
                                                mainloop=dbus.mainloop.glib.DBusGMainLoop())
            connection.set_exit_on_disconnect(False)
            connection.add_message_filter(self.take)
            self.connections[variable] = connection
            for name in names:
                connection.request_name(name)
        self.loop = GLib.MainLoop()
        threading.Thread(target=self.loop.run, daemon=True).start()

    def take(self, connection, message):
        if message.get_type() != dbus.lowlevel.MESSAGE_TYPE_METHOD_CALL:
            return dbus.lowlevel.HANDLER_RESULT_NOT_YET_HANDLED
        member = str(message.get_member())
        body = self.first_answers.get(member, self.answer)
        connection.send_message(filled(dbus.lowlevel.MethodReturnMessage(message), body))
        self.asked.add(member)
        return dbus.lowlevel.HANDLER_RESULT_HANDLED

    def signal(self, variable, path, interface, name, body):
        self.connections[variable].send_message(filled(dbus.lowlevel.SignalMessage(path, interface, name), body))
        self.connections[variable].flush()

    def provoke(self, answer, questions):
        """Has all of these asked again, and gives them this answer."""
        self.asked.clear()
        self.answer = answer
        connection = self.connections[SESSION]
        for name in (NOTIFICATIONS, WATCHER):
            connection.release_name(name)
            connection.request_name(name)
        self.signal(SESSION, "/org/freedesktop/portal/desktop", PORTAL, "SettingChanged",
                    ("ssv", ["org.freedesktop.appearance", "color-scheme", 1]))
        wait_for(f"the questions {questions}", lambda: questions <= self.asked)

    def close(self):
        self.loop.quit()
        for connection in self.connections.values():
            connection.close()


class BusValues(DesktopTest):
    def setUp(self):
        super().setUp()
        self.desktop.start_bus(SYSTEM)
        self.desktop.set_preferences(focus=1500, language="english")
        self.bus = self.desktop.bus()

    def start(self):
        self.process, _ = self.start_and_wait()
        if wait_for("a timer", self.desktop.timer)["runState"] != "running":
            self.desktop.press("space")
        self.desktop.wait_for_state("running")

    def title(self):
        return self.bus.call_blocking(BREVLIN, ITEM, dbus.PROPERTIES_IFACE, "Get", "ss", ["", "Title"], timeout=5)

    def assert_lives(self):
        """It has taken everything that was sent before, and lives."""
        try:
            self.title()
        except dbus.DBusException as error:
            code = self.process.wait(timeout=5)
            self.start()
            self.fail(f"{error}; it ended with {code}: {self.desktop.output_of('brevlin')[-300:]}")

    def assert_ticks(self):
        seen = self.title()
        wait_for("another second of the running timer", lambda: self.title() != seen, 3)

    def impersonate(self, first_answers):
        impostor = Impostor(self.desktop, first_answers)
        self.addCleanup(impostor.close)
        self.start()
        return impostor

    def test_a_call_of_the_wrong_type_is_refused_and_breaks_nothing(self):
        self.start()
        for path, interface, methods in METHODS:
            for name, right in methods.items():
                for body in BODIES:
                    with self.subTest(f"{interface}.{name}({body[0]})"):
                        message = dbus.lowlevel.MethodCallMessage(BREVLIN, path, interface, name)
                        try:
                            self.bus.send_message_with_reply_and_block(filled(message, body), 5)
                            answer = ""
                        except dbus.DBusException as error:
                            answer = error.get_dbus_name()
                        self.assert_lives()
                        self.assertEqual(answer == INVALID_ARGUMENTS, body[0] != right, answer)
        self.assert_ticks()

    def test_a_signal_of_the_wrong_type_breaks_nothing(self):
        impostor = self.impersonate(FIRST_ANSWERS)
        for variable, path, interface, names in SIGNALS:
            for name in names:
                for body in BODIES:
                    with self.subTest(f"{interface}.{name}({body[0]})"):
                        impostor.signal(variable, path, interface, name, body)
                        self.assert_lives()
        self.assert_ticks()

    def test_an_answer_of_the_wrong_type_breaks_nothing(self):
        for first_answers, questions in (
                ({}, {"GetCapabilities"}),
                (FIRST_ANSWERS, {"GetServerInformation", "Get", "ReadAll", "RegisterStatusNotifierItem"})):
            impostor = self.impersonate(first_answers)
            for body in BODIES:
                with self.subTest(f"{body[0]} where {', '.join(first_answers)} are right"):
                    impostor.provoke(body, questions)
                    self.assert_lives()
            self.assert_ticks()
            self.desktop.stop(self.process)
            impostor.close()


if __name__ == "__main__":
    main()
