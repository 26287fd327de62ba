"""Native windows of a Wayland desktop, which the X server does not know, asked of the compositor: (window, title, box).
The box is None where nobody tells it."""
import json
import subprocess

import dbus


def run(*words):
    return subprocess.run(words, capture_output=True, text=True, timeout=20).stdout


class Sway:
    def all(self):
        found, left = [], [json.loads(run("swaymsg", "-t", "get_tree"))]
        while left:
            node = left.pop()
            left += node["nodes"] + node["floating_nodes"]
            if node.get("shell") == "xdg_shell":
                rect = node["rect"]
                found.append((node["id"], node["name"], (rect["x"], rect["y"], rect["width"], rect["height"])))
        return found

    def close(self, window):
        run("swaymsg", f"[con_id={window}] kill")


class Labwc:
    def all(self):
        titles = [line.partition(": ")[2] for line in run("wlrctl", "toplevel", "list").splitlines()]
        return [(title, title, None) for title in titles]

    def close(self, window):
        run("wlrctl", "toplevel", "close", f"title:{window}")


class Plasma:
    def __init__(self):
        bus = dbus.SessionBus()
        self.runner = dbus.Interface(bus.get_object("org.kde.KWin", "/WindowsRunner"), "org.kde.krunner1")
        self.kwin = dbus.Interface(bus.get_object("org.kde.KWin", "/KWin"), "org.kde.KWin")

    def all(self):
        found = []
        for match, title, *_ in self.runner.Match("Brevlin"):
            window = match.partition("_")[2]
            info = self.kwin.getWindowInfo(window)
            if info:  # else it has just gone
                found.append((window, str(title), tuple(int(info[name]) for name in ("x", "y", "width", "height"))))
        return found

    def close(self, window):
        self.runner.Run(f"1_{window}", "")


KINDS = {"sway": Sway, "labwc": Labwc, "plasma": Plasma}
