"""The timer driven by other programs: the verbs of the command line, the bus, launchers."""

import json
import os
import pathlib
import re
import socket
import subprocess
import time
import xml.etree.ElementTree as xml

import dbus
import dbus.mainloop.glib
from gi.repository import GLib

from harness import PROGRAM, DesktopTest, main, wait_for, wait_for_equal

NAME, PATH, INTERFACE = "com.quillmark.Brevlin", "/com/quillmark/Brevlin", "com.quillmark.Brevlin.Timer1"
DESCRIPTION = pathlib.Path(__file__).parents[2] / "src" / "remote" / f"{INTERFACE}.xml"

# How each verb ends in these states, and the state that it leaves behind where it is carried out.
STATES = ("idle", "running", "paused", "ringing")
VERBS = {
    "start": ("running", 1, 1, "running"),
    "pause": (1, "paused", 1, 1),
    "resume": (1, 1, "running", 1),
    "toggle": ("running", "paused", "running", "running"),
    "skip": (1, "running", "running", "ringing"),
    "stop": (1, "ringing", "ringing", "idle"),
    "extend": (1, "running", "paused", 1),
    "silence": (1, 1, 1, 1),
    "intention x": ("idle", "running", "paused", "ringing"),
    "status": ("idle", "running", "paused", "ringing"),
    "status x": (2, 2, 2, 2),
}
WAYS = {"idle": [], "running": ["start"], "paused": ["start", "pause"], "ringing": ["start", "stop"]}


class RemoteTest(DesktopTest):
    def run_verb(self, *words):
        return subprocess.run([PROGRAM, *words], env=self.desktop.environment, stdin=subprocess.DEVNULL,
                              capture_output=True, timeout=30, check=False)

    def code(self, *words):
        return self.run_verb(*words).returncode

    def status(self):
        return json.loads(self.run_verb("status", "--json").stdout)

    def start_in_background(self):
        self.desktop.set_preferences(focus=1500, short_break=300, language="english")
        process = self.desktop.run_in_background([PROGRAM, "--background"])
        wait_for("an answer", lambda: self.code("status") == 0)
        return process

    def follow(self, *options):
        process = subprocess.Popen([PROGRAM, "status", "--follow", *options], env=self.desktop.environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        self.addCleanup(process.stdout.close)
        return process

    def assert_verbs(self):
        program = self.start_in_background()
        for state in STATES:
            for verb, outcomes in VERBS.items():
                outcome = outcomes[STATES.index(state)]
                with self.subTest(f"{verb} while {state}"):
                    for word in ("start", "stop", "stop"):  # whatever it was, it is idle then
                        self.run_verb(word)
                    # A break may wait after the stops; a skip in place of it brings the focus phase back.
                    while self.status()["phase"] != "focus":
                        for word in ("start", "stop", "stop"):
                            self.run_verb(word)
                    for word in WAYS[state]:
                        self.assertEqual(self.code(word), 0)
                    self.assertEqual(self.status()["state"], state)
                    done = self.run_verb(*verb.split())
                    self.assertEqual(done.returncode, outcome if isinstance(outcome, int) else 0)
                    self.assertEqual(bool(done.stderr), done.returncode != 0, done.stderr)
                    self.assertEqual(bool(done.stdout), verb == "status")
                    self.assertEqual(self.status()["state"], state if isinstance(outcome, int) else outcome)
        self.assertEqual(self.desktop.windows(), [])
        self.assertEqual(self.code("quit"), 0)
        self.assertEqual(program.wait(timeout=10), 0)
        for verb in ("pause", "status", "quit", "show"):
            self.assertEqual(self.code(verb), 3, verb)

    def assert_follows(self):
        """Each change a line, over the end and the return of the program."""
        program = self.start_in_background()
        follower = self.follow("--json")

        def next_state():
            return json.loads(follower.stdout.readline())["state"]

        self.assertEqual(next_state(), "idle")
        for verb, state in (("start", "running"), ("pause", "paused"), ("quit", "notRunning")):
            self.assertEqual(self.code(verb), 0)
            self.assertEqual(next_state(), state)
        program.wait(timeout=10)
        self.start_in_background()
        self.assertEqual(next_state(), "paused")


class Verbs(RemoteTest):
    def test_every_verb_ends_in_every_state_as_the_manual_says_and_opens_no_window(self):
        self.assert_verbs()

    def test_followers_see_every_change_and_end_with_their_readers(self):
        self.start_in_background()
        followers = [self.follow() for _ in range(20)]
        for follower in followers:
            self.assertIn(b"Not started", follower.stdout.readline())
        self.assertEqual(self.code("start", "--intention", "R&D <b>"), 0)
        for follower in followers:
            self.assertRegex(follower.stdout.readline(), rb"^Focus, 25:00 left, until \d\d:\d\d: R&D <b>\n$")
        self.assertEqual(self.code("stop"), 0)
        self.assertEqual(self.code("stop"), 0)
        for follower in followers:  # while nothing happens
            follower.stdout.close()
            self.assertEqual(follower.wait(timeout=5), 0)

    def test_a_follower_outlives_the_program_and_counts_its_seconds(self):
        self.assert_follows()
        self.assertEqual(self.code("resume"), 0)
        seconds = self.follow("--every-second", "--format", "plain")
        lines = [seconds.stdout.readline() for _ in range(4)]
        begin = [int(line[3:5]) for line in lines]
        self.assertEqual(begin, [(begin[0] - step) % 60 for step in range(4)])

    def test_a_start_without_a_running_program_starts_it_without_a_window_and_show_brings_that(self):
        self.desktop.set_preferences(focus=1500, language="english")
        self.assertEqual(self.code("start", "--intention", "x"), 0)
        self.addCleanup(self.code, "quit")
        self.assertEqual(self.status()["intention"], "x")
        self.assertEqual(self.desktop.windows(), [])
        second = self.desktop.run_in_background([PROGRAM, "--background"])
        self.assertEqual(second.wait(timeout=10), 0)
        self.assertEqual(self.desktop.windows(), [])
        self.assertEqual(self.code("show", "history"), 0)
        self.desktop.wait_for_window()
        self.assertEqual(self.code("show", "settings"), 0)
        self.desktop.wait_for_window("Settings")

    def test_the_bus_starts_the_program_for_a_start_and_for_nothing_else(self):
        started = self.desktop.folder / "started"
        program = self.desktop.folder / "program"
        program.write_text(f"#!/bin/sh\ntouch {started}\nexec {PROGRAM} --background\n")
        program.chmod(0o700)
        (self.desktop.folder / "services" / f"{NAME}.service").write_text(
            f"[D-BUS Service]\nName={NAME}\nExec={program}\n")
        connection = self.desktop.bus()
        connection.call_blocking(dbus.BUS_DAEMON_NAME, dbus.BUS_DAEMON_PATH, dbus.BUS_DAEMON_IFACE, "ReloadConfig", "", [])
        environment = {name: self.desktop.environment[name] for name in ("DISPLAY", "HOME", "XDG_RUNTIME_DIR")}
        connection.call_blocking(dbus.BUS_DAEMON_NAME, dbus.BUS_DAEMON_PATH, dbus.BUS_DAEMON_IFACE,
                                 "UpdateActivationEnvironment", "a{ss}", [environment])
        del self.desktop.environment["DISPLAY"]  # as over ssh
        for verb in ("status", "pause", "quit"):
            self.assertEqual(self.code(verb), 3)
        self.assertFalse(started.exists())
        self.assertEqual(self.code("toggle"), 0)
        self.addCleanup(self.code, "quit")
        self.assertTrue(started.exists())
        self.assertEqual(self.status()["state"], "running")

    def test_a_launchers_action_acts_without_a_window(self):
        self.start_in_background()
        bus = self.desktop.bus()
        for action, state in (("start", "running"), ("toggle", "paused"), ("skip", "running")):
            bus.call_blocking(NAME, PATH, "org.freedesktop.Application", "ActivateAction", "sava{sv}", [action, [], {}])
            wait_for_equal(state, "the state", lambda: self.status()["state"])
        self.assertEqual(self.desktop.windows(), [])


class VerbsWithoutBus(RemoteTest):
    has_session_bus = False

    def test_the_programs_own_socket_serves_where_there_is_no_bus(self):
        self.assert_verbs()

    def ask_socket(self, *words):
        path, = (self.desktop.folder / "runtime").glob("brevlin-*")
        with socket.socket(socket.AF_UNIX) as client:
            client.settimeout(10)
            client.connect(str(path))
            client.sendall(("\tcontrol\t" + "\t".join(words) + "\n").encode())
            return client.makefile().readline().rstrip("\n").split("\t")

    def test_a_change_between_two_questions_over_the_socket_is_told_at_the_second(self):
        self.start_in_background()
        revision = self.ask_socket("status")[1]
        self.assertEqual(self.ask_socket("start"), ["ok"])
        wait_for("another revision", lambda: self.ask_socket("status")[1] != revision)
        self.assertIn("running", self.ask_socket("await", revision)[3])
        self.assertEqual(self.ask_socket("dance"), ["refused"])

    def test_a_follower_on_the_socket_outlives_the_program(self):
        self.assert_follows()


class Bus(RemoteTest):
    def setUp(self):
        super().setUp()
        self.start_in_background()
        self.loop = dbus.mainloop.glib.DBusGMainLoop()
        self.connection = dbus.bus.BusConnection(self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"],
                                                 mainloop=self.loop)
        self.signals = []
        self.connection.add_signal_receiver(lambda *arguments, **names: self.signals.append((names["member"], arguments)),
                                            bus_name=NAME, path=PATH, member_keyword="member")
        self.timer = dbus.Interface(self.connection.get_object(NAME, PATH), INTERFACE)

    def listen(self, until, seconds=10.0):
        """Gives whether it came about."""
        deadline = time.monotonic() + seconds
        context = GLib.MainContext.default()
        while time.monotonic() < deadline and not until():
            context.iteration(False)
            time.sleep(0.005)
        return until()

    def properties(self):
        return self.connection.call_blocking(NAME, PATH, dbus.PROPERTIES_IFACE, "GetAll", "s", [INTERFACE])

    def changed(self, name):
        """The last value of the property that a signal told."""
        told = [arguments[1][name] for member, arguments in self.signals
                if member == "PropertiesChanged" and arguments[0] == INTERFACE and name in arguments[1]]
        return told[-1] if told else None

    def test_the_object_is_what_the_description_says(self):
        described = xml.parse(DESCRIPTION).find("interface")
        text = self.connection.call_blocking(NAME, PATH, "org.freedesktop.DBus.Introspectable", "Introspect", "", [])
        served = next(each for each in xml.fromstring(text) if each.get("name") == INTERFACE)

        def members(interface):
            return sorted((each.tag, each.get("name"), each.get("type"), [arg.get("type") for arg in each.iter("arg")])
                          for each in interface if each.tag in ("property", "method", "signal"))

        self.assertEqual(members(served), members(described))
        types = {dbus.String: "s", dbus.Int64: "x", dbus.UInt32: "u", dbus.Boolean: "b"}
        self.assertEqual({name: types[type(value)] for name, value in self.properties().items()},
                         {each.get("name"): each.get("type") for each in described.iter("property")})

    def test_every_signal_is_seen_and_none_from_second_to_second(self):
        self.timer.Start({"intention": "R&D"})
        self.assertTrue(self.listen(lambda: self.changed("State") == "running"))
        self.assertEqual((self.changed("CanPause"), self.changed("Intention")), (True, "R&D"))
        ends = self.changed("EndsAt")
        self.assertAlmostEqual(ends / 1e6, time.time() + 1500, delta=5)
        self.listen(lambda: False, 0.3)
        self.signals.clear()
        self.assertFalse(self.listen(lambda: self.signals, 2.5), self.signals)
        self.assertAlmostEqual(self.properties()["Remaining"] / 1e6, ends / 1e6 - time.time(), delta=0.5)
        self.timer.Extend()
        self.assertTrue(self.listen(lambda: self.changed("EndsAt") == ends + 300_000_000))
        self.timer.Stop()
        self.assertTrue(self.listen(lambda: self.changed("State") == "ringing"))
        record, = (arguments[0] for member, arguments in self.signals if member == "PhaseEnded")
        stored = self.desktop.wait_for_records(1)[0]
        self.assertEqual((record["id"].upper(), record["outcome"], record["intention"]),
                         (stored["id"].upper(), "endedEarly", "R&D"))
        self.assertEqual(record["planned"], 1_800_000_000)
        self.assertNotIn("Remaining", {name for member, arguments in self.signals if member == "PropertiesChanged"
                                       for name in arguments[1]})

    def test_what_does_not_apply_or_has_the_wrong_type_is_answered_by_an_error(self):
        for method, signature, arguments, error in (
                ("Pause", "", [], "com.quillmark.Brevlin.Error.Refused"),
                ("Start", "s", ["x"], "org.freedesktop.DBus.Error.InvalidArgs"),
                ("Start", "a{sv}", [{"intention": 5}], "org.freedesktop.DBus.Error.InvalidArgs"),
                ("Show", "sa{sv}", ["nowhere", {}], "org.freedesktop.DBus.Error.InvalidArgs"),
                ("Rewind", "", [], "org.freedesktop.DBus.Error.UnknownMethod")):
            with self.subTest(method), self.assertRaises(dbus.DBusException) as refused:
                self.connection.call_blocking(NAME, PATH, INTERFACE, method, signature, arguments)
            self.assertEqual(refused.exception.get_dbus_name(), error)
        self.assertEqual(self.properties()["State"], "idle")

    def test_a_generated_client_and_the_desktops_own_tool_drive_it(self):
        said = self.desktop.ask(os.environ["BREVLIN_TIMER_CLIENT"])
        self.assertEqual(said, "running 1 1500000000 com.quillmark.Brevlin.Error.Refused\nendedEarly R&D <b>\n")
        self.desktop.ask("gdbus", "call", "--session", "-d", NAME, "-o", PATH, "-m", f"{INTERFACE}.Toggle")
        self.assertTrue(re.search("'State'.*'running'", self.desktop.ask(
            "gdbus", "call", "--session", "-d", NAME, "-o", PATH, "-m", "org.freedesktop.DBus.Properties.GetAll", INTERFACE)))


if __name__ == "__main__":
    main()
