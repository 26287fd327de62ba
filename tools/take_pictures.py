#!/usr/bin/env python3
"""Takes the pictures of docs/pictures/: the real program on a virtual display, in every state, language and scheme.

Usage: tools/take_pictures.py [PROGRAM]     (default: build/release/src/brevlin)
Needs Xvfb, openbox, dbus-daemon, xdotool and ImageMagick.
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time
import uuid

from make_history import make_history

ROOT = pathlib.Path(__file__).resolve().parent.parent
PICTURES = ROOT / "docs" / "pictures"
PROGRAM = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/release/src/brevlin")
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


def history():
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
            "intention": "", "interruptionCount": 0, "outcomeRawValue": "completed" if done else "endedEarly",
            "pauseDuration": 0, "phaseRawValue": "focus", "plannedDuration": 1500, "plannedStartAt": end - 1500,
            "scheduledEndAt": end, "timeZoneIdentifierAtStart": "UTC"})
    return {"sessions": records, "version": 1}


def write(path, document):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(json.dumps(document))


def windows(environment):
    """Brevlin's visible windows, the newest one last."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Brevlin$"], env=environment,
                           capture_output=True, text=True, check=False)
    return found.stdout.split()


def keep(window, name, environment):
    target = PICTURES / f"{name}.png"
    subprocess.run(["import", "-window", window, "-strip", target], env=environment, check=True)
    print(target.relative_to(ROOT))


def take_panel(name, environment):
    """The panel of the status item, opened as a bar of the desktop would."""
    before = windows(environment)
    subprocess.run(["dbus-send", "--session", "--type=method_call", "--dest=com.quillmark.Brevlin",
                    "/StatusNotifierItem", "org.kde.StatusNotifierItem.Activate", "int32:640", "int32:220"],
                   env=environment, check=True)
    panels = []
    while not panels:
        time.sleep(0.1)
        panels = [window for window in windows(environment) if window not in before]
    time.sleep(1.2)
    keep(panels[0], f"panel-{name}", environment)


def take(state, language, scheme, display, folder, section="timer"):
    home = folder / f"{section}-{state}-{language}-{scheme}"
    settings = home / ".config/Brevlin"
    write(settings / "Brevlin.preferences.v1.json", {"appLanguage": "english" if language == "en" else "zh-Hans"})
    write(settings / "Brevlin.activeTimerSnapshot.v1.json", snapshot(state))
    (settings / "com.quillmark.brevlin.mainSection.json").write_text(f'"{section}"')
    records = make_history(2600, 420, time.time(), 11, "UTC") if section in ("history", "statistics") else history()
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
    program = subprocess.Popen([PROGRAM], env=environment, stderr=subprocess.DEVNULL)
    try:
        while not windows(environment):
            time.sleep(0.1)
        window = windows(environment)[-1]
        time.sleep(1.2)
        if section == "timer":
            keep(window, f"dashboard-{state}-{language}-{scheme}", environment)
            if state in ("idle", "running"):
                take_panel(f"{state}-{language}-{scheme}", environment)
            return
        if section == "statistics":
            for key, period in enumerate(("day", "week", "month", "year"), 1):
                subprocess.run(["xdotool", "mousemove", "0", "0", "key", str(key)], env=environment, check=True)
                time.sleep(0.6)
                keep(window, f"{section}-{period}-{language}-{scheme}", environment)
            return
        keep(window, f"{section}-{language}-{scheme}", environment)
        if section == "settings":
            subprocess.run(["xdotool", "mousemove", "--window", window, "460", "400", "click", "--repeat", "40", "5",
                            "mousemove", "0", "0"], env=environment, check=True)
            time.sleep(0.5)
            keep(window, f"{section}-scrolled-{language}-{scheme}", environment)
    finally:
        for process in (program, portal, bus):
            process.terminate()
            process.wait()


def main():
    PICTURES.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        number = folder / "display"
        with number.open("w") as descriptor:
            server = subprocess.Popen(["Xvfb", "-displayfd", str(descriptor.fileno()), "-screen", "0", "1280x900x24"],
                                      pass_fds=[descriptor.fileno()], stderr=subprocess.DEVNULL)
        while not number.read_text().strip():
            time.sleep(0.1)
        display = ":" + number.read_text().strip()
        manager = subprocess.Popen(["openbox"], env={**os.environ, "DISPLAY": display}, stderr=subprocess.DEVNULL)
        try:
            for state in ("idle", "running", "paused", "ringing"):
                for language in ("zh", "en"):
                    for scheme in ("light", "dark"):
                        take(state, language, scheme, display, folder)
            for section in ("settings", "about", "history", "statistics"):
                for language in ("zh", "en"):
                    for scheme in ("light", "dark"):
                        take("idle", language, scheme, display, folder, section)
        finally:
            manager.terminate()
            server.terminate()
    subprocess.run(["convert", PICTURES / "dashboard-running-zh-light.png", PICTURES / "dashboard-paused-en-dark.png",
                    "-bordercolor", "none", "-border", "12", "+append", "-resize", "1400x", "-strip",
                    PICTURES / "overview.png"], check=True)


if __name__ == "__main__":
    main()
