"""What every test of the whole program stands on: a display with a window manager, a session bus and a home of its
own, in one temporary folder. All of it is gone when the test ends, however it ends.

Nothing here sleeps for a fixed time: wait_for() asks again until the answer is there or the deadline has passed."""

import ctypes
import functools
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import dbus
import dbus.bus

PROGRAM = os.environ.get("BREVLIN_PROGRAM")
PICTURES = pathlib.Path(os.environ.get("BREVLIN_TEST_PICTURES", tempfile.gettempdir()))

REFERENCE_DATE = 978307200  # 2001-01-01 00:00:00 UTC, from which every stored instant counts
PREFERENCES_KEY = "Brevlin.preferences.v1"
TIMER_KEY = "Brevlin.activeTimerSnapshot.v1"
SECTION_KEY = "com.quillmark.brevlin.mainSection"
MAIN_WINDOW = "Brevlin"

BUS_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow user="*"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


def now():
    """The present instant as the program's documents tell it."""
    return time.time() - REFERENCE_DATE


def wait_for(what, ask, seconds=10.0):
    """Gives the first answer that is true; fails when there is none in time."""
    deadline = time.monotonic() + seconds
    while True:
        answer = ask()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"after {seconds} s there is still not: {what}")
        time.sleep(0.02)


def wait_for_equal(expected, what, ask, seconds=10.0):
    """Like wait_for(), and tells what the last answer was."""
    answers = []
    try:
        wait_for(f"{what}: {expected}", lambda: answers.append(ask()) or answers[-1] == expected, seconds)
    except AssertionError as error:
        raise AssertionError(f"{error}; it was {answers[-1]}") from error


def holds_for(what, ask, seconds):
    """Fails as soon as the answer is not true, within this time."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if not ask():
            raise AssertionError(f"it did not stay: {what}")
        time.sleep(0.05)


def die_with_parent():
    # A test that is killed itself cannot clean up.
    set_parent_death_signal = 1
    ctypes.CDLL(None).prctl(set_parent_death_signal, signal.SIGKILL)


def read_json(path):
    """The document, or None where there is none. Every write replaces the file, so what is there is whole."""
    try:
        return json.loads(path.read_bytes())
    except FileNotFoundError:
        return None


def with_picture(test):
    @functools.wraps(test)
    def run(self):
        try:
            test(self)
        except Exception as error:
            raise AssertionError(f"{error}\n{self.desktop.account(self.id())}") from error

    return run


class Desktop:
    """The display, the bus and the home. Programs started here are killed with it."""

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="brevlin-"))
        self.processes = []
        self.manager = ("",)
        self.manager_process = None
        self.display = None  # the server
        self.home = self.folder / "home"
        self.config = self.home / ".config" / "Brevlin"
        self.data = self.home / ".local" / "share" / "Brevlin"
        for folder in (self.home, self.folder / "runtime", self.folder / "tmp", self.folder / "services"):
            folder.mkdir(mode=0o700)
        self.environment = {
            "PATH": os.environ["PATH"],
            "LANG": "C.UTF-8",
            "HOME": str(self.home),
            "XDG_RUNTIME_DIR": str(self.folder / "runtime"),
            "TMPDIR": str(self.folder / "tmp"),
            # Where nobody listens: the machine's own bus is none of a test's business.
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.folder}/no-system-bus",
        }

    # Servers

    def start_display(self, manager=("openbox", "--sm-disable"), screen="1280x900"):
        self.environment["DISPLAY"] = self.start_server(screen)
        self.manager = manager
        self.start_manager()

    def start_server(self, screen):
        """The name of a display without a window manager."""
        reading, writing = os.pipe()
        # Without access control; it listens on no network.
        self.display = self.run_in_background(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{screen}x24", "-nolisten", "tcp", "-ac", "-noreset"],
            pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise AssertionError("Xvfb did not start:\n" + self.output_of("Xvfb"))
        return ":" + number

    def start_manager(self):
        command, ready = list(self.manager), self.folder / "openbox-is-ready"
        if command[0] == "openbox":
            # It says that it is there before it looks for the windows that are, and forgets one that comes meanwhile.
            ready.unlink(missing_ok=True)
            command += ["--startup", f"touch {ready}"]
        self.manager_process = self.run_in_background(command)
        if command[0] == "openbox":
            wait_for("openbox", ready.exists)
        wait_for("a window manager", lambda: "window id" in self.ask("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))

    def start_bus(self, variable="DBUS_SESSION_BUS_ADDRESS"):
        """A message bus without services but those in the folder of that name; its address stands under the variable."""
        name = variable.split("_")[1].lower()  # session or system
        configuration = self.folder / f"{name}-bus.conf"
        configuration.write_text(BUS_CONFIGURATION.format(socket=self.folder / f"{name}-bus",
                                                           services=self.folder / "services"))
        self.run_in_background(["dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile"])
        wait_for("a message bus", (self.folder / f"{name}-bus").exists)
        self.environment[variable] = f"unix:path={self.folder}/{name}-bus"

    # Processes

    def run_in_background(self, command, **options):
        log = open(self.folder / "tmp" / f"{pathlib.Path(command[0]).name}.log", "ab")
        with log:
            process = subprocess.Popen(command, env=self.environment, cwd=self.folder, stdin=subprocess.DEVNULL,
                                       stdout=log, stderr=log, start_new_session=True, preexec_fn=die_with_parent,
                                       **options)
        self.processes.append(process)
        return process

    def start_program(self, *before):
        """Starts Brevlin, by another program if there is one, and does not wait for it."""
        # openbox has been missing after a client was killed.
        if self.manager_process and self.manager_process.poll() is not None:
            self.start_manager()
        if before:
            self.environment["ASAN_OPTIONS"] = "detect_leaks=0"  # which ends a sanitized program that is traced
        return self.run_in_background([*before, PROGRAM])

    def bus(self, variable="DBUS_SESSION_BUS_ADDRESS"):
        """A connection of the test's own to a bus that start_bus() has started."""
        return dbus.bus.BusConnection(self.environment[variable])

    def start_mock(self, *arguments, variable="DBUS_SESSION_BUS_ADDRESS", name, path):
        """A stand-in for a service of the desktop, and the interface that steers it."""
        self.run_in_background([sys.executable, "-m", "dbusmock", *arguments])
        connection = self.bus(variable)
        wait_for(f"the service {name}", lambda: connection.name_has_owner(name))
        return dbus.Interface(connection.get_object(name, path), "org.freedesktop.DBus.Mock")

    def stop(self, process, number=signal.SIGTERM):
        """Sends the signal and gives the exit code."""
        process.send_signal(number)
        return process.wait(timeout=10)

    def close(self):
        for process in reversed(self.processes):
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def ask(self, *command):
        """What a program of the desktop prints; empty where it fails."""
        return subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, timeout=20, check=False).stdout.decode()

    # Windows

    def windows(self, title=MAIN_WINDOW):
        """The windows of this title that the window manager knows, minimised ones too."""
        line = rf"^(0x[0-9a-f]+) +\S+ +\S+ {re.escape(title)}$"
        return [int(window, 16) for window in re.findall(line, self.ask("wmctrl", "-l"), re.MULTILINE)]

    def wait_for_window(self, title=MAIN_WINDOW, seconds=10.0):
        """The window, once it is there and has the keyboard."""
        wait_for(f"a window “{title}”", lambda: self.windows(title), seconds)
        window = self.windows(title)[0]
        wait_for(f"the keyboard on the window “{title}”", lambda: self.active_window() == window, seconds)
        return window

    def active_window(self):
        match = re.search(r"window id # (0x[0-9a-f]+)", self.ask("xprop", "-root", "_NET_ACTIVE_WINDOW"))
        return int(match.group(1), 16) if match else 0

    def top_window(self):
        stack = re.findall(r"0x[0-9a-f]+", self.ask("xprop", "-root", "_NET_CLIENT_LIST_STACKING"))
        return int(stack[-1], 16) if stack else 0

    def states(self, window):
        return re.findall(r"_NET_WM_STATE_\w+", self.ask("xprop", "-id", str(window), "_NET_WM_STATE"))

    def geometry(self, window):
        """x, y, width and height on the screen."""
        text = self.ask("xwininfo", "-id", str(window))
        labels = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        return tuple(int(re.search(rf"{label}:\s+(-?\d+)", text).group(1)) for label in labels)

    def press(self, *keys):
        self.ask("xdotool", "key", *keys)

    def cover(self):
        """Another window above everything, which has the keyboard."""
        if self.windows("Cover"):
            self.ask("wmctrl", "-a", "Cover")
        else:
            self.run_in_background(["xmessage", "-geometry", "1200x800+0+0", "-title", "Cover", "in front"])
        return self.wait_for_window("Cover")

    def click(self, window, x, y):
        self.ask("xdotool", "mousemove", "--window", str(window), str(x), str(y), "click", "1")

    def click_at(self, x, y):
        """A place of the screen."""
        self.ask("xdotool", "mousemove", str(x), str(y), "click", "1")

    def move_pointer(self, x, y):
        """To a place of the screen."""
        self.ask("xdotool", "mousemove", str(x), str(y))

    def pixel(self, window, x, y):
        """Red, green and blue, 0 to 255 each."""
        crop = f"1x1+{x}+{y}"
        return tuple(self.picture(window, "-crop", crop, "+repage"))

    def picture(self, window="root", *options):
        """The bytes of what is on the screen there; equal bytes, equal picture."""
        return subprocess.run(["import", "-window", str(window), *options, "-depth", "8", "rgb:-"], env=self.environment,
                              stdout=subprocess.PIPE, check=True, timeout=20).stdout

    # Documents

    def set_preferences(self, focus=3.0, short_break=3.0, long_break=3.0, auto_start=False, language="zh-Hans",
                        sound=False, intensity="standard", appearance="dark", capsule=True):
        """Stores preferences; to be done before the program starts. Durations in seconds."""
        document = {
            "timerSettings": {
                "focusDuration": focus,
                "shortBreakDuration": short_break,
                "longBreakDuration": long_break,
                "focusSessionsPerLongBreak": 4,
                "autoStartBreaks": auto_start,
                "autoStartFocus": auto_start,
                "alertIntensity": intensity,
            },
            "showTopCapsuleWhileRunning": capsule,
            "playCompletionSound": sound,
            "topTimerAppearance": appearance,
            "appLanguage": language,
        }
        self.config.mkdir(mode=0o700, parents=True, exist_ok=True)
        (self.config / f"{PREFERENCES_KEY}.json").write_text(json.dumps(document))

    def store_timer(self, document):
        """Stores the running timer; to be done before the program starts."""
        self.config.mkdir(mode=0o700, parents=True, exist_ok=True)
        (self.config / f"{TIMER_KEY}.json").write_text(json.dumps(document))

    def timer(self):
        """The stored snapshot of the running timer, or None."""
        return read_json(self.config / f"{TIMER_KEY}.json")

    def history(self):
        """The records in the history file, latest end first."""
        archive = read_json(self.data / "sessions-v1.json")
        return archive["sessions"] if archive else []

    def wait_for_state(self, state, seconds=10.0):
        def ask():
            timer = self.timer()
            return timer if timer and timer["runState"] == state else None

        return wait_for(f"a timer that is {state}", ask, seconds)

    def start_phase(self):
        """As the user does in the window that has the keyboard; gives the running timer."""
        self.press("space")
        return self.wait_for_state("running")

    def wait_for_records(self, count, seconds=10.0):
        return wait_for(f"a history of {count} records",
                        lambda: self.history() if len(self.history()) >= count else None, seconds)

    # Accounts of failures

    def output_of(self, name):
        try:
            return (self.folder / "tmp" / f"{name}.log").read_text(errors="replace")
        except FileNotFoundError:
            return ""

    def account(self, name):
        """What a person wants to see when a test has failed."""
        PICTURES.mkdir(parents=True, exist_ok=True)
        picture = PICTURES / f"{name}.png"
        self.ask("import", "-window", "root", str(picture))
        ended = {process.args[0]: process.poll() for process in self.processes if process.poll() is not None}
        return "\n".join([f"the screen at that moment: {picture}", "windows:", self.ask("wmctrl", "-l", "-p"),
                          "those of the X server:", self.ask("xwininfo", "-root", "-children"),
                          f"timer: {self.timer()}", f"history: {self.history()}", "Brevlin said:",
                          self.output_of("brevlin"), f"programs that have ended: {ended}", "The window manager said:",
                          self.output_of(pathlib.Path(self.manager[0]).name)])


class DesktopTest(unittest.TestCase):
    """A test with a desktop of its own, which has a session bus unless the class says otherwise."""

    has_session_bus = True
    screen = "1280x900"
    manager = ("openbox", "--sm-disable")

    def __init_subclass__(cls):
        for name, member in list(vars(cls).items()):
            if name.startswith("test_"):
                setattr(cls, name, with_picture(member))

    def setUp(self):
        if not PROGRAM:
            self.fail("BREVLIN_PROGRAM names no program to test; CTest sets it")
        self.desktop = Desktop()
        self.addCleanup(self.desktop.close)
        # Before the window manager, which starts one by dbus-launch where it finds none.
        if self.has_session_bus:
            self.desktop.start_bus()
        else:
            self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.desktop.folder}/no-session-bus"
        self.desktop.start_display(self.manager, self.screen)

    def start_and_wait(self):
        """The process and its window, which has the keyboard."""
        process = self.desktop.start_program()
        return process, self.desktop.wait_for_window()


def main():
    unittest.main(verbosity=2, argv=[sys.argv[0], *sys.argv[1:]])
