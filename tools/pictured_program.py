"""Brevlin on a virtual display, in a state, a language and a scheme: what the picture tools share.

Needs Xvfb, xrdb, openbox, dbus-daemon and xdotool.
"""
import contextlib
import json
import os
import pathlib
import subprocess
import time
import uuid

from make_history import make_history

ROOT = pathlib.Path(__file__).resolve().parent.parent
EPOCH = 978307200  # 2001-01-01 in Unix time

PORTAL = """
import sys, dbus, dbus.service, dbus.mainloop.glib
from gi.repository import GLib
dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
name = dbus.service.BusName("org.freedesktop.portal.Desktop", dbus.SessionBus())
class Settings(dbus.service.Object):
    @dbus.service.method("org.freedesktop.portal.Settings", in_signature="as", out_signature="a{sa{sv}}")
    def ReadAll(self, groups):
        return {"org.freedesktop.appearance": {"color-scheme": dbus.UInt32(int(sys.argv[1]))}}
settings = Settings(name, "/org/freedesktop/portal/desktop")
print("ready", flush=True)
GLib.MainLoop().run()
"""


def snapshot(state):
    """A stored timer in this state, as a user would meet it in the middle of a day."""
    now = time.time() - EPOCH
    document = {"phase": "focus", "runState": state, "plannedDuration": 1500, "accumulatedPauseSeconds": 0,
                "interruptionCount": 0, "completedFocusCount": 2}
    if state in ("running", "paused"):
        document |= {"sessionID": str(uuid.uuid4()).upper(), "startedAt": now - 556}
    if state == "running":
        document["expectedEndAt"] = now + 944.5
    if state == "paused":
        document |= {"pausedAt": now - 5, "pausedRemainingSeconds": 944, "interruptionCount": 1}
    if state == "ringing":
        document |= {"phase": "shortBreak", "plannedDuration": 300, "completedFocusCount": 3}
    return document


INTENTIONS = {"en": ("Draft the chapter #thesis", "", "Read two papers #thesis #reading", "Answer letters", ""),
              "zh": ("写第一章 #论文", "", "读两篇文章 #论文 #阅读", "回信", "")}


def history(language="en"):
    """Five focus phases a day over the last nine days, most of them completed; the latest an hour ago."""
    now = time.time() - EPOCH
    records = []
    for index in range(45):
        day, place = divmod(index, 5)
        end = now - 3600 - day * 86400 - place * 1800
        done = index % 9 != 4
        records.append({
            "actualStartAt": end - 1500, "completedWhileAway": False, "cycleIndex": place % 4 + 1,
            "effectiveDuration": 1500 if done else 400, "endedAt": end, "id": str(uuid.uuid4()).upper(),
            "intention": INTENTIONS[language][place], "interruptionCount": 0, "outcomeRawValue": "completed" if done else "endedEarly",
            "pauseDuration": 0, "phaseRawValue": "focus", "plannedDuration": 1500, "plannedStartAt": end - 1500,
            "scheduledEndAt": end, "timeZoneIdentifierAtStart": "UTC"})
    return {"sessions": records, "version": 1}


def long_history(language):
    """A year of days as make_history makes them, every second focus phase for something."""
    document = make_history(2600, 420, time.time(), 11, "UTC")
    focus = [record for record in document["sessions"] if record["phaseRawValue"] == "focus"]
    for index, record in enumerate(focus):
        record["intention"] = INTENTIONS[language][index % 5]
    return document


def write(path, document):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(json.dumps(document))


def windows(environment):
    """Brevlin's visible windows, the newest one last."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Brevlin$"], env=environment,
                           capture_output=True, text=True, check=False)
    return found.stdout.split()


@contextlib.contextmanager
def virtual_display(folder, size="1280x900", dpi=96):
    """A display with a window manager; its name."""
    number = folder / "display"
    number.unlink(missing_ok=True)
    with number.open("w") as descriptor:
        server = subprocess.Popen(["Xvfb", "-displayfd", str(descriptor.fileno()), "-screen", "0", f"{size}x24",
                                   "-noreset"], pass_fds=[descriptor.fileno()], stderr=subprocess.DEVNULL)
    while not number.read_text().strip():
        time.sleep(0.1)
    display = ":" + number.read_text().strip()
    environment = {**os.environ, "DISPLAY": display}
    subprocess.run(["xrdb", "-merge"], input=f"Xft.dpi: {dpi}\n", text=True, env=environment, check=True)
    manager = subprocess.Popen(["openbox", "--sm-disable"], env=environment, stderr=subprocess.DEVNULL)
    try:
        yield display
    finally:
        manager.terminate()
        server.terminate()
        server.wait()


@contextlib.contextmanager
def running_program(program, display, folder, state, language, scheme, section="timer"):
    """Brevlin with its window open at a section; the environment of its desktop and the window."""
    home = folder / str(uuid.uuid4())
    settings = home / ".config/Brevlin"
    write(settings / "Brevlin.preferences.v1.json", {"appLanguage": "english" if language == "en" else "zh-Hans"})
    write(settings / "Brevlin.activeTimerSnapshot.v1.json", snapshot(state))
    (settings / "com.quillmark.brevlin.mainSection.json").write_text(f'"{section}"')
    records = long_history(language) if section in ("history", "statistics") else history(language)
    write(home / ".local/share/Brevlin/sessions-v1.json", records)
    environment = {**os.environ, "DISPLAY": display, "HOME": str(home), "XDG_RUNTIME_DIR": str(folder),
                   "LC_ALL": "C.UTF-8", "TZ": "UTC"}
    for name in ("XDG_DATA_HOME", "XDG_CONFIG_HOME", "WAYLAND_DISPLAY"):
        environment.pop(name, None)
    bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"], stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL, text=True)
    environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
    portal = subprocess.Popen(["/usr/bin/python3", "-c", PORTAL, "1" if scheme == "dark" else "2"], env=environment,
                              stdout=subprocess.PIPE, text=True)
    portal.stdout.readline()
    process = subprocess.Popen([program], env=environment, stderr=subprocess.DEVNULL)
    try:
        while not windows(environment):
            time.sleep(0.1)
        time.sleep(1.2)
        yield environment, windows(environment)[-1]
    finally:
        for each in (process, portal, bus):
            each.terminate()
            each.wait()


def open_panel(environment):
    """The panel of the status item, opened as a bar of the desktop would; its window."""
    before = windows(environment)
    subprocess.run(["dbus-send", "--session", "--type=method_call", "--dest=com.quillmark.Brevlin",
                    "/StatusNotifierItem", "org.kde.StatusNotifierItem.Activate", "int32:640", "int32:220"],
                   env=environment, check=True)
    panels = []
    while not panels:
        time.sleep(0.1)
        panels = [window for window in windows(environment) if window not in before]
    time.sleep(1.2)
    return panels[0]


def press(environment, *keys):
    """Keys for the window that has the keyboard, with the pointer out of the way."""
    subprocess.run(["xdotool", "mousemove", "0", "0", "key", *keys], env=environment, check=True)
    time.sleep(0.6)


def turn_wheel(environment, window, turns):
    """Scrolls the content of the window down."""
    subprocess.run(["xdotool", "mousemove", "--window", window, "460", "300", "click", "--repeat", str(turns), "5",
                    "mousemove", "0", "0"], env=environment, check=True)
    time.sleep(0.5)
