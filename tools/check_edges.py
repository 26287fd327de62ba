#!/usr/bin/env python3
"""Holds the arrows between the folders under src/ to the table below, and Qt's modules to theirs.

Fails with a line for every #include that the table lacks.
"""
import pathlib
import re
import sys

SOURCE = pathlib.Path(__file__).resolve().parent.parent / "src"

# folder: (folders it may include besides itself, Qt modules it may use). The most specific folder counts; * is all.
EDGES = {
    "core": ([], []),
    "platform": (["core"], []),
    "platform/freedesktop/files": (["core", "platform"], []),
    "platform/freedesktop/clock": (["core", "platform"], ["Core"]),
    "platform/freedesktop/event_loop": (["core", "platform"], ["Core"]),
    "platform/freedesktop/bus": ([], ["Core", "Gui", "DBus"]),
    "platform/freedesktop/sway": (["core", "platform", "platform/freedesktop/event_loop"], ["Core"]),
    "platform/freedesktop/x11": (["core", "platform", "platform/freedesktop/event_loop", "platform/freedesktop/sway"],
                                 ["Core", "Gui"]),
    "platform/freedesktop/wayland": (["platform", "platform/freedesktop/sway"], ["Core", "Gui"]),
    "platform/freedesktop/appearance": (["platform", "platform/freedesktop/bus", "platform/freedesktop/x11"],
                                        ["Core", "Gui", "DBus"]),
    "platform/freedesktop/socket": ([], []),
    "platform/freedesktop/instance": (["core", "platform", "platform/freedesktop/event_loop", "platform/freedesktop/socket"],
                                      ["Core"]),
    "platform/freedesktop/session": (["core", "platform", "platform/freedesktop/bus",
                                      "platform/freedesktop/event_loop", "platform/freedesktop/instance",
                                      "platform/freedesktop/socket"], ["Core", "Gui", "DBus"]),
    "platform/freedesktop/shortcuts": (["core", "platform", "platform/freedesktop/bus", "platform/freedesktop/x11"],
                                       ["Core", "Gui", "DBus"]),
    "platform/freedesktop/notifications": (["core", "platform"], []),
    "platform/freedesktop/notifications/switches": (["core", "platform", "platform/freedesktop/bus"],
                                                     ["Core", "DBus"]),
    "platform/freedesktop/notifications/server": (["core", "platform", "platform/freedesktop/bus",
                                                   "platform/freedesktop/notifications",
                                                   "platform/freedesktop/notifications/switches"], ["Core", "DBus"]),
    "platform/freedesktop/hooks": (["core", "platform", "platform/freedesktop/files"], []),
    "platform/freedesktop/login": (["core", "platform"], ["Core", "Gui"]),
    "platform/freedesktop/sound": (["core", "platform"], ["Core", "Gui"]),
    "platform/freedesktop/sound/process": ([], ["Core", "Multimedia"]),
    "platform/freedesktop/tray": (["core", "platform", "platform/freedesktop/bus"],
                                  ["Core", "Gui", "DBus", "Widgets"]),
    "storage": (["core", "platform"], []),
    "exchange": (["core", "platform", "storage"], []),
    "services": (["core", "platform"], []),
    "app": (["core", "platform", "storage", "services", "exchange"], ["Core"]),
    "command/line": (["core"], []),
    "command/verbs": (["core", "platform/freedesktop/files", "platform/freedesktop/socket", "storage", "exchange",
                       "command/line"], []),
    "command": (["command/line", "core", "platform", "platform/freedesktop/clock", "platform/freedesktop/event_loop",
                 "platform/freedesktop/files", "platform/freedesktop/instance", "platform/freedesktop/socket", "storage", "exchange"],
                ["Core"]),
    "remote": (["core", "platform", "platform/freedesktop/bus", "platform/freedesktop/instance", "platform/freedesktop/session",
                "platform/freedesktop/socket", "storage", "exchange", "app"], ["Core", "DBus"]),
    "front": ([], []),
    "ui/style": (["core"], ["Core", "Gui", "Widgets"]),
    "ui/controls": (["core", "ui/style"], ["Core", "Gui", "Widgets"]),
    "ui/capsule": (["core", "platform", "storage", "app", "ui/controls", "ui/style"], ["Core", "Gui", "Widgets"]),
    "ui/timer": (["core", "app", "ui/controls", "ui/style"], ["Core", "Gui", "Widgets"]),
    "ui/screens/settings": (["core", "platform", "storage", "exchange", "app", "ui/controls", "ui/style"],
                            ["Core", "Gui", "Widgets"]),
    "ui/screens/history": (["core", "platform", "storage", "app", "ui/controls", "ui/style"],
                            ["Core", "Gui", "Widgets"]),
    "ui/screens/about": (["core", "app", "ui/controls", "ui/style"], ["Core", "Gui", "Widgets"]),
    "ui/screens/statistics": (["core", "app", "ui/controls", "ui/style"], ["Core", "Gui", "Widgets"]),
    "ui/main": (["core", "platform", "storage", "app", "ui"], ["Core", "Gui", "Widgets"]),
    "ui/tray": (["core", "platform", "storage", "app", "ui"], ["Core", "Gui", "Widgets"]),
    "": (["*"], ["Core", "Gui", "Widgets"]),
}

QT_HEADERS = sorted(pathlib.Path("/usr/include").glob("*/qt6"))


def folder_of(path, names):
    """The longest folder of the table that holds the path."""
    return max((name for name in names if name == "" or path == name or path.startswith(name + "/")), key=len)


def qt_module(header):
    """The module that Qt's headers are installed under; None for a header that Qt lacks."""
    for folder in QT_HEADERS:
        for module in sorted(folder.glob("Qt*")):
            if (module / header).exists():
                return module.name.removeprefix("Qt")
    return None


def faults():
    for file in sorted([*SOURCE.rglob("*.h"), *SOURCE.rglob("*.cpp")]):
        path = file.relative_to(SOURCE)
        place = folder_of(str(path.parent) if str(path.parent) != "." else "", EDGES)
        allowed, modules = EDGES[place]
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            project = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
            qt = re.match(r"\s*#\s*include\s+<(?:Qt\w+/)?(Q\w+)>", line)
            where = f"src/{path}:{number}"
            if project and "/" in project[1]:
                target = folder_of(str(pathlib.PurePath(project[1]).parent), EDGES)
                if not (target == place or "*" in allowed or target in allowed or
                        "ui" in allowed and target.startswith("ui/")):
                    yield f"{where}: {place or 'src'} may not include {target}"
            if qt:
                module = qt_module(qt[1])
                if module is None:
                    yield f"{where}: Qt has no header {qt[1]}"
                elif module not in modules:
                    yield f"{where}: {place or 'src'} may not use Qt {module}"


if __name__ == "__main__":
    found = list(faults())
    print("\n".join(found) if found else "Every include is in the table.")
    sys.exit(1 if found else 0)
