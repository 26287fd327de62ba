"""sway, which shows its only screen in a window of an X server that nothing else is told of, so that pointer, keyboard and
pictures are outside of it."""

import json

from harness import Desktop, wait_for

SCREEN = (1280, 900)
# As large a bar as sway makes without a word about its font.
CONFIGURATION = """
output X11-1 resolution {width}x{height}
default_border none
xwayland {xwayland}
font monospace 10
bar {{
    position top
    status_command sleep infinity
    tray_output *
}}
exec sh -c 'echo "$DISPLAY" >{ready}.new; mv {ready}.new {ready}'
"""


class SwayDesktop(Desktop):
    def start_sway(self, xwayland="disable"):
        self.outside = self.start_server(f"{SCREEN[0]}x{SCREEN[1]}")
        configuration = self.folder / "sway.conf"
        ready = self.folder / "sway-is-ready"
        configuration.write_text(CONFIGURATION.format(width=SCREEN[0], height=SCREEN[1], xwayland=xwayland, ready=ready))
        self.manager = ("sway",)
        self.manager_process = self.run_in_background(
            ["env", f"DISPLAY={self.outside}", "WLR_BACKENDS=x11", "WLR_RENDERER=pixman", "sway", "--config",
             str(configuration)])
        wait_for("sway", ready.exists)
        self.inside = ready.read_text().strip()  # its own X server, where it has one
        runtime = self.folder / "runtime"
        self.environment["SWAYSOCK"] = str(next(runtime.glob("sway-ipc.*.sock")))
        self.environment["WAYLAND_DISPLAY"] = next(runtime.glob("wayland-?")).name

    def windows(self, title="Brevlin"):
        def inside(node):
            found = [node] if node["name"] == title and node["type"] in ("con", "floating_con") else []
            return found + [each for child in node["nodes"] + node["floating_nodes"] for each in inside(child)]

        return inside(json.loads(self.ask("swaymsg", "--raw", "--type", "get_tree") or "{}"))

    def has_keyboard(self, title):
        return any(window["focused"] for window in self.windows(title))

    def outside_ask(self, *command):
        return self.ask("env", f"DISPLAY={self.outside}", *command)

    def move_pointer(self, x, y):
        # sway sets the pointer where the first movement ends, and tells of it with the next one.
        self.outside_ask("xdotool", "mousemove", str(x - 1), str(y), "mousemove", str(x), str(y))

    def click(self, *place):
        if place:
            self.move_pointer(*place)
        self.outside_ask("xdotool", "click", "1")

    def press(self, *keys):
        self.outside_ask("xdotool", "key", *keys)

    def account(self, name):
        self.environment["DISPLAY"] = self.outside
        return super().account(name)
