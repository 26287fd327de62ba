"""The capsule at the top of the screen, driven with the pointer while another program has the keyboard."""

import os
import re
import time

import dbus

from harness import DesktopTest, holds_for, main, now, read_json, wait_for, wait_for_equal

SCREEN = (1280, 900)
CAPSULE = "顶部专注胶囊"
CIRCLE = (615, 8, 50, 50)
ISLAND = (410, 8, 460, 126)
POSITION_KEY = "Brevlin.topPanel.position.v1"


class CapsuleTest(DesktopTest):
    def start(self, focus=600.0, **preferences):
        desktop = self.desktop
        desktop.set_preferences(focus=focus, **preferences)
        self.program, _ = self.start_and_wait()
        desktop.start_phase()
        desktop.ask("xdotool", "windowminimize", str(desktop.windows()[0]))
        desktop.move_pointer(640, 500)
        self.typed = desktop.folder / "typed"
        self.open_window("Line edit", str(self.typed))

    def open_window(self, title, *arguments):
        process = self.desktop.run_in_background([os.environ["BREVLIN_OTHER_WINDOW"], *arguments])
        self.desktop.wait_for_window(title)
        return process

    def end_the_phase_after(self, seconds):
        """As if it had been started earlier."""
        desktop = self.desktop
        desktop.stop(self.program)
        timer = desktop.timer()
        desktop.store_timer({**timer, "startedAt": now() + seconds - timer["plannedDuration"], "expectedEndAt": now() + seconds})
        self.program = desktop.start_program()
        desktop.ask("xdotool", "windowminimize", str(desktop.wait_for_window()))

    def window_box(self):
        """The capsule's window as the X server has it; None while it is not mapped."""
        found = self.desktop.ask("xdotool", "search", "--onlyvisible", "--name", CAPSULE).split()
        return self.desktop.geometry(found[0]) if found else None

    # Above the tip that the pointer brings up sooner or later.
    WITHOUT_TIP = (0, 0, SCREEN[0], 60)

    def box(self, area=(0, 0, SCREEN[0], 560)):
        """Where the capsule is to be seen; None where nothing is. The rest of that part of the screen is plain."""
        left, top, width, height = area
        found = self.desktop.ask("import", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}", "+repage",
                                 "-format", "%@", "info:-")
        width, height, x, y = map(int, re.findall(r"\d+", found))
        return (left + x, top + y, width, height) if width else None

    def wait_for_box(self, box, seconds=5.0, area=(0, 0, SCREEN[0], 560)):
        wait_for_equal(box, "the capsule", lambda: self.box(area), seconds)

    def assert_typing_goes_on(self, letter):
        """The line edit has kept the keyboard."""
        before = self.typed.read_text() if self.typed.exists() else ""
        self.desktop.press(letter)
        wait_for(f"the letter {letter}", lambda: self.typed.exists() and self.typed.read_text() == before + letter)

    def hover_and_leave(self):
        """The circle widens to the right, stays where it is, and shrinks not before its time."""
        desktop = self.desktop
        desktop.move_pointer(640, 33)
        seen = []
        wait_for("the wide capsule", lambda: seen.append(self.box(self.WITHOUT_TIP)) or seen[-1] == (615, 8, 316, 50))
        self.assertEqual({box[0] for box in seen}, {615}, f"the circle does not move: {seen}")
        wait_for("a window as large as the capsule", lambda: self.window_box() == (615, 8, 316, 50))
        self.assert_typing_goes_on("h")
        wait_for("its buttons", lambda: desktop.pixel("root", 615 + 316 - 26, 14) != desktop.pixel("root", 615 + 316 - 26, 20))
        desktop.move_pointer(640, 500)
        left = time.monotonic()
        wait_for("the pointer's leaving to be noticed", lambda: self.box(self.WITHOUT_TIP)[2] < 316, 3)
        self.assertGreater(time.monotonic() - left, 0.13)
        self.wait_for_box((615, 8, 50, 50))

    def drag_to_the_left_edge(self):
        desktop = self.desktop
        desktop.move_pointer(640, 33)
        self.wait_for_box((615, 8, 316, 50), area=self.WITHOUT_TIP)
        desktop.ask("xdotool", "mousedown", "1")
        for x in range(620, 40, -40):
            desktop.move_pointer(x, 33 + (640 - x) // 10)
        desktop.move_pointer(60, 93)
        wait_for("the capsule under the hand", lambda: self.box() == (35, 68, 316, 50))
        holds_for("the capsule under the hand", lambda: self.box() == (35, 68, 316, 50), 0.4)
        desktop.ask("xdotool", "mouseup", "1")
        self.wait_for_box((0, 68, 316, 50))
        self.assert_typing_goes_on("d")
        desktop.move_pointer(640, 500)
        self.wait_for_box((0, 68, 50, 50))

    def widen_move_and_become_an_island(self):
        desktop = self.desktop
        self.start()
        self.wait_for_box(CIRCLE)
        self.assertEqual(self.window_box(), CIRCLE)
        self.hover_and_leave()
        self.drag_to_the_left_edge()
        self.end_the_phase_after(2.0)
        desktop.wait_for_state("ringing")
        self.wait_for_box((0, 68, 460, 126))
        self.assertEqual(self.window_box(), (0, 68, 460, 126))
        self.assert_typing_goes_on("i")
        # A click beside the island's round corner is for what lies there.
        self.assertEqual(self.window_at(1, 69), self.window_at(1, 400))
        self.assertNotEqual(self.window_at(230, 130), self.window_at(1, 400))
        # Minimise and come back.
        desktop.click_at(460 - 20 - 27 - 12 - 14, 68 + 39)
        self.wait_for_box((0, 68, 50, 50))
        desktop.click_at(25, 93)
        self.wait_for_box((0, 68, 460, 126))
        # Start the break, whose end is dismissed.
        desktop.click_at(460 - 40, 68 + 126 - 30)
        self.assertEqual(desktop.wait_for_state("running")["phase"], "shortBreak")
        self.wait_for_box((0, 68, 50, 50))
        desktop.wait_for_state("ringing", 12)
        self.wait_for_box((0, 68, 460, 126))
        desktop.click_at(460 - 20 - 13, 68 + 39)
        desktop.wait_for_state("idle")
        wait_for("nothing of the capsule", lambda: self.box() is None)
        self.assert_typing_goes_on("e")

    def window_at(self, x, y):
        """The window, with its frame, that a click there would go to."""
        self.desktop.move_pointer(x, y)
        return self.desktop.ask("xdotool", "getmouselocation", "--shell").splitlines()[-1]

    def is_seen(self):
        """The circle has no colour of the windows here in its middle, where the clock stands."""
        return self.desktop.pixel("root", 640, 12) != (0, 128, 128)

    def stay_above_windows_and_below_what_floats(self):
        self.start()
        self.wait_for_box(CIRCLE)
        self.open_window("Full screen", "--full-screen")
        wait_for("the capsule above a full-screen window", self.is_seen)
        holds_for("the keyboard on the full-screen window",
                  lambda: self.desktop.active_window() == self.desktop.windows("Full screen")[0], 0.3)
        floating = self.desktop.run_in_background([os.environ["BREVLIN_OTHER_WINDOW"], "--floating"])
        wait_for("what floats above the capsule", lambda: not self.is_seen())
        # The order of the other windows changes, which is no reason to rise above what floats.
        self.desktop.ask("xdotool", "windowactivate", str(self.desktop.windows("Line edit")[0]))
        holds_for("what floats above the capsule", lambda: not self.is_seen(), 0.6)
        self.desktop.stop(floating)
        wait_for("the capsule", self.is_seen)


class CapsuleOnOpenbox(CapsuleTest):
    def test_the_place_survives_a_restart_and_its_screen(self):
        desktop = self.desktop
        desktop.ask("xrandr", "--setmonitor", "left", "640/170x900/240+0+0", "screen")
        desktop.ask("xrandr", "--setmonitor", "right", "640/170x900/240+640+0", "none")
        self.start(focus=600)
        self.wait_for_box((295, 8, 50, 50))
        desktop.ask("xdotool", "mousemove", "320", "33", "mousedown", "1", "mousemove", "400", "80", "mousemove",
                    "900", "233", "mouseup", "1", "mousemove", "640", "500")
        self.wait_for_box((875, 208, 50, 50))
        place = wait_for("the saved place", lambda: read_json(desktop.config / f"{POSITION_KEY}.json"))
        self.assertEqual((place["version"], place["horizontalAnchor"]), (5, "center"))
        self.assertAlmostEqual(place["xFraction"], (900 - 640) / 640)

        desktop.stop(self.program)
        wait_for("nothing of the capsule", lambda: self.box() is None)
        self.program = desktop.start_program()
        wait_for("the capsule", self.box)
        desktop.ask("xdotool", "windowminimize", str(desktop.wait_for_window()))
        self.wait_for_box((875, 208, 50, 50))

        desktop.ask("xrandr", "--delmonitor", "right")
        # The same fractions of the screen that is left.
        self.wait_for_box((235, 208, 50, 50), 1.5)

    def test_the_capsule_stays_above_windows_and_below_what_floats_on_openbox(self):
        self.stay_above_windows_and_below_what_floats()

    def test_a_screen_that_something_covers_hides_the_island_until_it_is_gone(self):
        self.start()
        self.wait_for_box(CIRCLE)
        self.desktop.ask("xdotool", "windowclose", str(self.desktop.windows("Line edit")[0]))
        self.end_the_phase_after(3.0)
        locker = self.desktop.run_in_background([os.environ["BREVLIN_OTHER_WINDOW"], "--floating"])
        wait_for("a covered screen", lambda: self.box() is None)
        # A capsule that appears only now must not appear above it either.
        self.desktop.stop(self.program)
        self.program = self.desktop.start_program()
        self.desktop.wait_for_state("ringing")
        holds_for("nothing above the locker", lambda: self.window_box() is None and self.box() is None, 1.0)
        self.desktop.stop(locker)
        self.desktop.ask("xdotool", "windowminimize", str(self.desktop.wait_for_window()))
        self.wait_for_box(ISLAND)

    def test_a_locked_session_hides_the_capsule_and_the_island_until_it_is_unlocked(self):
        desktop = self.desktop
        saver, login, session = "org.freedesktop.ScreenSaver", "org.freedesktop.login1", "org.freedesktop.login1.Session"
        mock = desktop.start_mock(saver, "/org/freedesktop/ScreenSaver", saver, name=saver,
                                  path="/org/freedesktop/ScreenSaver")
        desktop.start_bus("DBUS_SYSTEM_BUS_ADDRESS")
        manager = desktop.start_mock("--system", "--template", "logind", variable="DBUS_SYSTEM_BUS_ADDRESS", name=login,
                                     path="/org/freedesktop/login1")
        path = manager.AddSession("7", "seat0", dbus.UInt32(0), "user", True)
        of_session = dbus.Interface(desktop.bus("DBUS_SYSTEM_BUS_ADDRESS").get_object(login, path),
                                    "org.freedesktop.DBus.Mock")
        desktop.environment["XDG_SESSION_ID"] = "7"
        self.start()
        for lock in (lambda locked: of_session.EmitSignal(session, "Lock" if locked else "Unlock", "", []),
                     lambda locked: of_session.UpdateProperties(session, {"LockedHint": locked}),
                     lambda locked: mock.EmitSignal(saver, "ActiveChanged", "b", [locked])):
            self.wait_for_box(CIRCLE)
            lock(True)
            wait_for("nothing of the capsule", lambda: self.window_box() is None)
            lock(False)
        self.wait_for_box(CIRCLE)
        mock.AddMethod(saver, "GetActive", "", "b", "ret = True")
        self.end_the_phase_after(1.0)
        desktop.wait_for_state("ringing")
        holds_for("nothing of the island", lambda: self.window_box() is None and self.box() is None, 0.5)
        mock.EmitSignal(saver, "ActiveChanged", "b", [False])
        self.wait_for_box(ISLAND)

    def test_the_capsule_lives_on_openbox_without_a_compositor(self):
        self.widen_move_and_become_an_island()

    def test_the_capsule_lives_on_openbox_with_a_compositor(self):
        self.desktop.run_in_background(["picom", "--backend", "xrender", "--config", "/dev/null"])
        wait_for("a compositor", lambda: self.desktop.ask("xdotool", "search", "--name", "picom"))
        self.widen_move_and_become_an_island()


class CapsuleOnXfwm(CapsuleTest):
    manager = ("xfwm4", "--compositor=on", "--sm-client-disable")

    def test_the_capsule_stays_above_windows_and_below_what_floats_on_xfwm(self):
        self.stay_above_windows_and_below_what_floats()

    def test_the_capsule_lives_on_xfwm_with_its_compositor(self):
        self.widen_move_and_become_an_island()


if __name__ == "__main__":
    main()
