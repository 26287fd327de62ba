"""Brevlin as a native Wayland program, driven with the pointer while another program has the keyboard."""

import json
import math
import os
import re

from harness import PROGRAM, DesktopTest, holds_for, main, read_json, wait_for, wait_for_equal
from sway_desktop import SCREEN, SwayDesktop

POSITION_KEY = "Brevlin.topPanel.position.v1"


class LayerTest(DesktopTest):
    def setUp(self):
        self.desktop = SwayDesktop()
        self.addCleanup(self.desktop.close)
        self.desktop.start_bus()
        self.desktop.start_sway()

    def open_window(self, title, *arguments):
        desktop = self.desktop
        desktop.run_in_background([os.environ["BREVLIN_OTHER_WINDOW"], "-platform", "wayland", *arguments])
        wait_for(f"the keyboard on “{title}”", lambda: desktop.has_keyboard(title))

    def start(self, focus=600.0, **preferences):
        """A phase runs, and a plain window that writes down what is typed fills the screen."""
        desktop = self.desktop
        desktop.set_preferences(focus=focus, **preferences)
        self.typed = desktop.folder / "typed"
        self.open_window("Line edit", str(self.typed))
        self.bar = SCREEN[1] - desktop.windows("Line edit")[0]["rect"]["height"]
        desktop.ask(PROGRAM, "start")
        desktop.wait_for_state("running")

    def box(self, area=None):
        """Where the capsule is to be seen below the bar; None where nothing is."""
        left, top, width, height = area or (0, self.bar, SCREEN[0], 420)
        found = self.desktop.outside_ask("import", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}", "+repage",
                                         "-format", "%@", "info:-")
        width, height, x, y = map(int, re.findall(r"\d+", found))
        return (left + x, top + y, width, height) if width else None

    def without_tip(self):
        return (0, self.bar, SCREEN[0], 60)

    def wait_for_box(self, box, area=None):
        left, top, width, height = box
        wait_for_equal((left, self.bar + top, width, height), "the capsule", lambda: self.box(area))

    def assert_typing_goes_on(self, letter):
        before = self.typed.read_text() if self.typed.exists() else ""
        self.desktop.press(letter)
        wait_for(f"the letter {letter}", lambda: self.typed.exists() and self.typed.read_text() == before + letter)

    def command(self, *words):
        self.desktop.ask("swaymsg", *words)


class Layer(LayerTest):
    def test_the_capsule_lives_on_a_layer_of_the_screen(self):
        desktop = self.desktop
        self.start()
        self.wait_for_box((615, 8, 50, 50))
        desktop.move_pointer(640, self.bar + 33)
        self.wait_for_box((615, 8, 316, 50), self.without_tip())
        self.assert_typing_goes_on("h")
        holds_for("the wide capsule under a pointer that rests", lambda: self.box(self.without_tip())[2] == 316, 5)
        desktop.move_pointer(640, 700)
        self.wait_for_box((615, 8, 50, 50))

        # What lies beside the circle in its surface is the window's below.
        desktop.click(700, self.bar + 33)
        self.assert_typing_goes_on("c")
        self.assertEqual(self.box(self.without_tip())[2:], (50, 50))
        self.command("fullscreen", "enable")
        wait_for("a full-screen window", lambda: desktop.windows("Line edit")[0]["fullscreen_mode"])
        wait_for_equal((615, 50, 50), "the capsule above it", lambda: (lambda box: (box[0], *box[2:]))(
            self.box((0, 0, SCREEN[0], 420))))
        self.command("fullscreen", "disable")

    def test_the_hand_takes_the_capsule_along_to_the_edge(self):
        desktop = self.desktop
        self.start()
        self.wait_for_box((615, 8, 50, 50))
        desktop.move_pointer(640, self.bar + 33)
        self.wait_for_box((615, 8, 316, 50), self.without_tip())
        desktop.outside_ask("xdotool", "mousedown", "1")
        for x in range(620, 40, -40):
            desktop.outside_ask("xdotool", "mousemove", str(x), str(self.bar + 33 + (640 - x) // 2))
        desktop.outside_ask("xdotool", "mousemove", "40", str(self.bar + 333))
        self.wait_for_box((15, 308, 316, 50))
        self.assertIsNone(read_json(desktop.config / f"{POSITION_KEY}.json"))
        desktop.outside_ask("xdotool", "mouseup", "1")
        self.wait_for_box((0, 308, 316, 50))
        wait_for("the place to be kept", lambda: read_json(desktop.config / f"{POSITION_KEY}.json"))
        desktop.move_pointer(640, 700)
        self.wait_for_box((0, 308, 50, 50))
        # Where it is seen it is also met.
        desktop.move_pointer(25, self.bar + 333)
        self.wait_for_box((0, 308, 316, 50), (0, self.bar + 300, SCREEN[0], 60))
        self.assert_typing_goes_on("d")

    def test_the_capsule_comes_back_with_its_screen_at_every_scale(self):
        desktop = self.desktop
        self.start()
        self.wait_for_box((615, 8, 50, 50))
        for scale in (2, 1.5, 1.25, 1):
            self.command("output", "X11-1", "scale", str(scale))
            below_bar = (0, math.ceil(self.bar * scale), SCREEN[0], 200)
            # A half pixel may go either way.
            wait_for(f"the circle at {scale}", lambda: self.box(below_bar) and all(
                abs(length - 50 * scale) < 1 for length in self.box(below_bar)[2:]))
        self.command("output", "X11-1", "disable")
        self.command("output", "X11-1", "enable")
        self.wait_for_box((615, 8, 50, 50))

    def test_an_island_waits_below_a_lock(self):
        desktop = self.desktop
        self.start(focus=4.0)
        self.wait_for_box((615, 8, 50, 50))
        desktop.run_in_background(["swaylock", "--color", "00aa00", "--no-unlock-indicator"])
        whole = (0, 0, *SCREEN)
        wait_for("the lock", lambda: self.box(whole) is None)
        desktop.wait_for_records(1)
        holds_for("nothing above the lock", lambda: self.box(whole) is None, 1.5)
        desktop.ask("pkill", "-USR1", "swaylock")
        self.wait_for_box((410, 8, 460, 126))

    def test_the_panel_has_the_keyboard_until_something_else_is_clicked(self):
        desktop = self.desktop
        self.start()
        below = (900, self.bar, 380, 600)
        icon = wait_for("the status item", lambda: self.box((SCREEN[0] - 60, 0, 60, self.bar)))

        def open_panel():
            desktop.click(icon[0] + icon[2] // 2, icon[1] + icon[3] // 2)
            box = wait_for("the panel", lambda: self.box(below))
            self.assertGreater(box[0] + box[2], SCREEN[0] - 20)

        open_panel()
        desktop.press("space")
        desktop.wait_for_state("paused")
        desktop.click(300, 500)
        wait_for("the plain window", lambda: self.box(below) is None)
        self.assert_typing_goes_on("p")
        open_panel()
        desktop.press("Escape")
        wait_for("the plain window", lambda: self.box(below) is None)

    def test_the_window_keeps_its_size_alone_and_comes_to_the_front_by_its_token(self):
        desktop = self.desktop
        stored = {"x": 123, "y": 77, "width": 900, "height": 640, "maximized": False}
        desktop.config.mkdir(mode=0o700, parents=True)
        geometry = desktop.config / "com.quillmark.brevlin.mainWindow.json"
        geometry.write_text(json.dumps(stored))
        self.command("focus_on_window_activation focus")
        self.command('for_window [app_id="com.quillmark.Brevlin"] floating enable')
        # Not by sway's own socket, where no token is needed.
        desktop.run_in_background(["env", "--unset=SWAYSOCK", PROGRAM])
        wait_for("the window", lambda: desktop.has_keyboard("Brevlin"))
        self.command("resize", "set", "860", "620")
        wait_for("the new size", lambda: read_json(geometry)["width"] != 900)
        self.assertEqual((read_json(geometry)["x"], read_json(geometry)["y"]), (123, 77))
        self.open_window("Line edit", str(desktop.folder / "typed"))
        self.command("exec", PROGRAM)  # which gets a token from sway
        wait_for("the window in front", lambda: desktop.has_keyboard("Brevlin"))


if __name__ == "__main__":
    main()
