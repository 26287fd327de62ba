"""Sends wrong and random bodies to the running program: to every method that it exports, as every signal that it
listens to, as answers to what it asks, and into the socket of a second start."""

import collections
import os
import pathlib
import socket
import sys
import time

import proof

os.environ.setdefault("BREVLIN_PROGRAM", str(proof.BUILT / "src" / "brevlin"))
sys.path.insert(0, str(proof.ROOT / "tests" / "desktop"))

import dbus
import dbus.bus
import dbus.lowlevel
import dbus.mainloop.glib
from gi.repository import GLib

import bus_bodies
from harness import Desktop

NAME = "com.quillmark.Brevlin"
ITEM, MENU, PROPERTIES = "org.kde.StatusNotifierItem", "com.canonical.dbusmenu", "org.freedesktop.DBus.Properties"
NOTIFICATIONS, PORTAL, LOGIN = "org.freedesktop.Notifications", "org.freedesktop.portal.Desktop", "org.freedesktop.login1"
WATCHER, XFCONF = "org.kde.StatusNotifierWatcher", "org.xfce.Xfconf"
SAVERS = [f"org.{desktop}.ScreenSaver" for desktop in ("freedesktop", "gnome", "cinnamon", "mate")]
SESSION = "/org/freedesktop/login1/session/_1"

METHODS = [(path, interface, member, right) for path, interface, members in (
    ("/StatusNotifierItem", ITEM, {"Activate": "ii", "SecondaryActivate": "ii", "ContextMenu": "ii", "Scroll": "is",
                                   "ProvideXdgActivationToken": "s", "XAyatanaSecondaryActivate": "u"}),
    ("/StatusNotifierItem", PROPERTIES, {"Get": "ss", "GetAll": "s", "Set": "ssv"}),
    ("/StatusNotifierItem/Menu", MENU, {"GetLayout": "iias", "GetGroupProperties": "aias", "GetProperty": "is",
                                        "Event": "isvu", "EventGroup": "a(isvu)", "AboutToShow": "i",
                                        "AboutToShowGroup": "ai"}),
    ("/StatusNotifierItem/Menu", PROPERTIES, {"Get": "ss", "GetAll": "s", "Set": "ssv"}),
    ("/com/quillmark/Brevlin", "org.freedesktop.Application", {"Activate": "a{sv}", "Open": "asa{sv}",
                                                               "ActivateAction": "sava{sv}"}),
    # Without the call that ends the program.
    ("/com/quillmark/Brevlin", "com.quillmark.Brevlin.Timer1", {
        "Start": "a{sv}", "Pause": "", "Resume": "", "Toggle": "", "Skip": "", "Stop": "", "Extend": "", "Silence": "",
        "SetIntention": "s", "Show": "sa{sv}", "Status": ""}),
    ("/com/quillmark/Brevlin", PROPERTIES, {"Get": "ss", "GetAll": "s", "Set": "ssv"}),
) for member, right in members.items()]
SIGNALS = [("session", "/org/freedesktop/Notifications", NOTIFICATIONS, member, right) for member, right in (
    ("ActionInvoked", "us"), ("ActivationToken", "us"), ("NotificationClosed", "uu"))]
SIGNALS += [
    ("session", "/org/freedesktop/Notifications", PROPERTIES, "PropertiesChanged", "sa{sv}as"),
    ("session", "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "SettingChanged", "ssv"),
    ("session", "/StatusNotifierWatcher", WATCHER, "StatusNotifierHostRegistered", ""),
    ("session", "/StatusNotifierWatcher", WATCHER, "StatusNotifierHostUnregistered", ""),
    ("session", "/org/xfce/Xfconf", XFCONF, "PropertyChanged", "ssv"),
    ("session", "/org/xfce/Xfconf", XFCONF, "PropertyRemoved", "ss"),
    ("system", "/org/freedesktop/login1", LOGIN + ".Manager", "PrepareForSleep", "b"),
    ("system", SESSION, LOGIN + ".Session", "Lock", ""),
    ("system", SESSION, LOGIN + ".Session", "Unlock", ""),
    ("system", SESSION, PROPERTIES, "PropertiesChanged", "sa{sv}as"),
]
SIGNALS += [("session", "/" + saver.replace(".", "/"), saver, "ActiveChanged", "b") for saver in SAVERS]
# What the program waits for before it listens to more.
ANSWERS = {"GetCapabilities": ("as", [["body", "actions"]]), "Notify": ("u", [7]), "GetSession": ("o", [SESSION]),
           "GetServerInformation": ("ssss", ["Xfce Notify Daemon", "x", "1", "1.2"])}
LONGEST_ANSWER = 5.0  # seconds
LONGEST_END = 12.0  # after 10 s the program says what it could not save
LOGGED = 6  # what was said last; an answer may take effect after the next message
MOST_CRASHES = 3  # of one method or signal; each costs a start


class Stranger:
    """A desktop whose services say anything."""

    def __init__(self, chance):
        self.chance = chance
        self.answers_right = 1.0  # the share of right answers
        self.desktop = Desktop()
        self.desktop.start_display()
        self.desktop.start_bus()
        self.desktop.start_bus("DBUS_SYSTEM_BUS_ADDRESS")
        self.desktop.set_preferences(focus=600.0, language="english")
        loop = dbus.mainloop.glib.DBusGMainLoop()
        self.buses = {}
        for bus, names in {"session": [NOTIFICATIONS, PORTAL, WATCHER, XFCONF, *SAVERS], "system": [LOGIN]}.items():
            address = self.desktop.environment[f"DBUS_{bus.upper()}_BUS_ADDRESS"]
            self.buses[bus] = dbus.bus.BusConnection(address, mainloop=loop)
            self.buses[bus].add_message_filter(self.answer)
            for name in names:
                self.buses[bus].request_name(name)
        self.process = None
        self.said = collections.deque(maxlen=LOGGED)
        self.start()

    def start(self):
        kept, self.answers_right = self.answers_right, 1.0
        self.process = self.desktop.start_program()
        deadline = time.monotonic() + 20
        while not self.buses["session"].name_has_owner(NAME) or not self.responds():
            if self.process.poll() is not None or time.monotonic() > deadline:
                raise AssertionError("the program does not start:\n" + self.desktop.output_of("brevlin"))
            time.sleep(0.05)
        self.answers_right = kept

    def answer(self, connection, message):
        if message.get_type() != dbus.lowlevel.MESSAGE_TYPE_METHOD_CALL or message.get_no_reply():
            return dbus.lowlevel.HANDLER_RESULT_NOT_YET_HANDLED
        if self.chance.random() < self.answers_right:
            signature, arguments = ANSWERS.get(message.get_member(), ("", []))
        else:
            signature = "".join(bus_bodies.random_signature(self.chance) for _ in range(self.chance.randrange(4)))
            arguments = bus_bodies.body(self.chance, signature)
        self.log(f"answered {message.get_interface()}.{message.get_member()}", signature, arguments)
        connection.send_message(bus_bodies.fill(dbus.lowlevel.MethodReturnMessage(message), signature, arguments))
        return dbus.lowlevel.HANDLER_RESULT_HANDLED

    def log(self, what, signature, arguments):
        self.said.append(f"{what} “{signature}” {arguments!r:.160}")

    def account(self):
        """What was said before, the latest last, and what the program has said about it."""
        return "\n    ".join(["", *self.said, *self.desktop.output_of("brevlin").splitlines()[-2:]])

    def responds(self):
        """Whether the main thread answers, after all that was sent before."""
        answered = []
        call = dbus.lowlevel.MethodCallMessage(NAME, "/StatusNotifierItem", PROPERTIES, "GetAll")
        call.append(ITEM, signature="s")
        self.buses["session"].send_message_with_reply(call, answered.append, LONGEST_ANSWER)
        deadline = time.monotonic() + LONGEST_ANSWER + 1
        while not answered and time.monotonic() < deadline:
            GLib.MainContext.default().iteration(False) or time.sleep(0.0005)
        return bool(answered) and answered[0].get_type() == dbus.lowlevel.MESSAGE_TYPE_METHOD_RETURN

    def send(self, target, signature, arguments):
        if target[0] == "socket":
            path = next(pathlib.Path(self.desktop.environment["XDG_RUNTIME_DIR"]).glob("brevlin-*"))
            with socket.socket(socket.AF_UNIX) as client:
                client.connect(str(path))
                client.sendall(arguments)
            return
        if target[0] in self.buses:
            bus, path, interface, member, _ = target
            message = dbus.lowlevel.SignalMessage(path, interface, member)
        else:
            bus = "session"
            path, interface, member, _ = target
            message = dbus.lowlevel.MethodCallMessage(NAME, path, interface, member)
            message.set_no_reply(True)
        self.buses[bus].send_message(bus_bodies.fill(message, signature, arguments))

    def attack(self, row, target, signature, arguments, reproduce):
        """False where the program has crashed or hangs; another one runs then."""
        self.log("sent " + " ".join(target[:-1]), signature, arguments)
        self.send(target, signature, arguments)
        is_fine = self.responds()
        verdict = {}
        if not is_fine:
            deadline = time.monotonic() + 2
            while self.process.poll() is None and time.monotonic() < deadline:
                time.sleep(0.01)
            code = self.process.poll()
            if code is None:
                verdict["wrong"] = "the program does not answer any more after" + self.account()
                self.process.kill()
                self.process.wait()
            elif code != 0:  # 0: it was asked to quit, by the menu
                verdict["crashed"] = f"exit {code} after" + self.account()
            self.start()
        row.add(verdict, reproduce)
        return not verdict

    def end(self, row):
        """The timer and the history are whole, and the program still ends in order."""
        self.process.terminate()
        deadline = time.monotonic() + LONGEST_END
        while self.process.poll() is None and time.monotonic() < deadline:
            GLib.MainContext.default().iteration(False) or time.sleep(0.01)
        code = self.process.poll()
        verdict = {"wrong": "it does not end" + self.account()} if code is None else {}
        if code:
            verdict["crashed"] = f"exit {code} at the end" + self.account()
        try:
            self.desktop.timer()
            self.desktop.history()
        except ValueError as error:
            verdict["torn"] = str(error)
        row.add(verdict, "at the end of the proof")
        self.desktop.close()


def wrong_bodies():
    """The table, for every method and signal."""
    row = proof.Row("wrong bodies from the bus", "messages")
    budget = proof.Budget(0, 1)  # the values only, always the same
    stranger = Stranger(budget.chance)
    for target in METHODS + SIGNALS:
        crashes = 0
        for signature in bus_bodies.wrong_signatures(target[-1]):
            if crashes == MOST_CRASHES:
                proof.say(f"{' '.join(target[:-1])} crashed {crashes} times; the rest of its bodies is left out")
                break
            arguments = bus_bodies.body(budget.chance, signature)
            crashes += not stranger.attack(row, target, signature, arguments, "proofs/run --only bus_table")
    stranger.end(row)
    return [row]


def random_bodies(budget):
    row = proof.Row("random bodies from the bus", "messages")
    chance = budget.chance
    stranger = Stranger(chance)
    stranger.answers_right = 0.3
    while budget.lasts():
        target = chance.choice(METHODS + SIGNALS + [("socket", "")])
        if target[0] == "socket":
            signature, arguments = "", chance.randbytes(chance.choice([0, 1, 30, 5000])) + chance.choice([b"", b"\n"])
        else:
            right = chance.random() < 0.3
            signature = target[-1] if right else "".join(bus_bodies.random_signature(chance)
                                                         for _ in range(chance.randrange(6)))
            arguments = bus_bodies.body(chance, signature)
        stranger.attack(row, target, signature, arguments,
                        f"message {row.count + 1} of seed {budget.seed}: proofs/run --only bus --seed {budget.seed}")
    stranger.end(row)
    return [row]
