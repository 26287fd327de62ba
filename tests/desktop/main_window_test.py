"""The main window under a real window manager: closing, quitting, place and size, light and dark."""

import signal

from harness import DesktopTest, main, wait_for

import dbus

PORTAL = "org.freedesktop.portal.Desktop"
PORTAL_PATH = "/org/freedesktop/portal/desktop"
SETTINGS = "org.freedesktop.portal.Settings"
APPEARANCE = "org.freedesktop.appearance"
LIGHT, DARK = dbus.UInt32(2), dbus.UInt32(1)

CLOSE_BUTTON = (27, 26)


class MainWindow(DesktopTest):
    def test_the_timer_lives_on_while_the_window_is_closed(self):
        desktop = self.desktop
        desktop.set_preferences(focus=2)
        process, window = self.start_and_wait()
        desktop.press("space")
        desktop.wait_for_state("running")
        desktop.press("ctrl+w")
        wait_for("a closed window", lambda: not desktop.windows())
        record, = desktop.wait_for_records(1)
        self.assertEqual(record["outcomeRawValue"], "completed")

        self.assertEqual(desktop.start_program().wait(timeout=5), 0)
        window = desktop.wait_for_window()
        desktop.click(window, *CLOSE_BUTTON)
        wait_for("a closed window", lambda: not desktop.windows())
        self.assertIsNone(process.poll())
        self.assertEqual(desktop.timer()["runState"], "ringing")

    def test_control_q_quits(self):
        process, _ = self.start_and_wait()
        self.desktop.press("ctrl+q")
        self.assertEqual(process.wait(timeout=5), 0)

    def test_the_signals_of_an_ending_session_end_it_cleanly(self):
        desktop = self.desktop
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number):
                process, _ = self.start_and_wait()
                self.assertEqual(desktop.stop(process, number), 0)
                wait_for("no window", lambda: not desktop.windows())

    def test_place_and_size_outlive_the_program(self):
        desktop = self.desktop
        process, window = self.start_and_wait()
        self.assertEqual(desktop.geometry(window)[2:], (922, 652), "920 x 650 and a hairline at first")
        desktop.ask("xdotool", "windowsize", str(window), "1000", "700")
        desktop.ask("xdotool", "windowmove", str(window), "130", "70")
        placed = (130, 70, 1000, 700)
        wait_for("a moved window", lambda: desktop.geometry(window) == placed)
        # Quitting at once must not lose what the delayed save has not written yet.
        desktop.press("ctrl+q")
        self.assertEqual(process.wait(timeout=5), 0)

        process, window = self.start_and_wait()
        wait_for("the window at its place", lambda: desktop.geometry(window) == placed)
        desktop.ask("xdotool", "windowsize", str(window), "300", "200")
        wait_for("a window at its least size", lambda: desktop.geometry(window)[2:] == (802, 572))

    def test_a_window_that_nobody_moved_is_centred_at_every_start(self):
        desktop = self.desktop
        for start in ("first", "second", "third"):
            with self.subTest(start):
                process, window = self.start_and_wait()
                x, y, width, height = desktop.geometry(window)
                self.assertLessEqual(abs(2 * x + width - 1280), 4)
                self.assertLessEqual(abs(2 * y + height - 900), 4)
                desktop.press("ctrl+q")
                self.assertEqual(process.wait(timeout=5), 0)

    def test_a_stored_size_beyond_the_screens_is_held_to_them(self):
        desktop = self.desktop
        desktop.config.mkdir(mode=0o700, parents=True)
        (desktop.config / "com.quillmark.brevlin.mainWindow.json").write_text(
            '{"x":-50000,"y":7,"width":100000,"height":100000,"maximized":false}')
        _, window = self.start_and_wait()
        self.assertEqual(desktop.geometry(window), (0, 0, 1280, 900))

    def test_every_window_bears_the_icon(self):
        desktop = self.desktop
        _, window = self.start_and_wait()
        desktop.press("ctrl+comma")
        settings = desktop.wait_for_window("设置")
        for one in (window, settings):
            self.assertIn("Icon (128 x 128)", desktop.ask("xprop", "-id", str(one), "_NET_WM_ICON"))

    def test_f11_fills_the_screen_and_gives_it_back(self):
        desktop = self.desktop
        _, window = self.start_and_wait()
        before = desktop.geometry(window)
        desktop.press("F11")
        wait_for("a full screen", lambda: "_NET_WM_STATE_FULLSCREEN" in desktop.states(window)
                 and desktop.geometry(window) == (0, 0, 1280, 900))
        desktop.press("F11")
        wait_for("the window as before", lambda: "_NET_WM_STATE_FULLSCREEN" not in desktop.states(window)
                 and desktop.geometry(window) == before)

    def test_light_and_dark_follow_the_desktop_at_once(self):
        desktop = self.desktop
        portal = desktop.start_mock("--session", PORTAL, PORTAL_PATH, SETTINGS, name=PORTAL, path=PORTAL_PATH)

        def choose(scheme):
            portal.AddMethod(SETTINGS, "ReadAll", "as", "a{sa{sv}}",
                             f"ret = {{'{APPEARANCE}': {{'color-scheme': dbus.UInt32({scheme})}}}}")
            portal.EmitSignal(SETTINGS, "SettingChanged", "ssv", [APPEARANCE, "color-scheme", scheme])

        choose(DARK)
        _, window = self.start_and_wait()

        def canvas():
            return max(desktop.pixel(window, 12, 80))

        self.assertLess(wait_for("a painted canvas", canvas), 64, "dark from the first picture on")
        choose(LIGHT)
        wait_for("a light canvas", lambda: canvas() > 220)
        choose(DARK)
        wait_for("a dark canvas", lambda: canvas() < 64)

    def test_without_a_portal_a_dark_gtk_theme_is_followed(self):
        desktop = self.desktop
        settings = desktop.home / ".xsettingsd"
        settings.write_text('Net/ThemeName "BlackMATE"\n')
        daemon = desktop.run_in_background(["xsettingsd"])
        wait_for("the X settings", lambda: "1 setting" in desktop.output_of("xsettingsd"))
        _, window = self.start_and_wait()

        def canvas():
            return max(desktop.pixel(window, 12, 80))

        self.assertLess(wait_for("a painted canvas", canvas), 64, "dark from the first picture on")
        settings.write_text('Net/ThemeName "Menta"\n')
        daemon.send_signal(signal.SIGHUP)
        wait_for("a light canvas", lambda: canvas() > 220)


class SmallScreen(DesktopTest):
    """A full-HD laptop at 200 %: 960 x 540 points, less than the window's least size."""

    screen = "1920x1080"

    def test_on_a_low_screen_every_control_is_reached(self):
        desktop = self.desktop
        desktop.environment["QT_SCALE_FACTOR"] = "2"
        _, window = self.start_and_wait()
        x, y, width, height = desktop.geometry(window)
        self.assertTrue(x >= 0 and y >= 0 and x + width <= 1920 and y + height <= 1080, (x, y, width, height))
        middle = str(width // 2)
        desktop.ask("xdotool", "mousemove", "--window", str(window), middle, "600",
                    "click", "--repeat", "20", "--delay", "10", "5")
        # The last of the window is the card's padding below its buttons.
        desktop.click(window, middle, height - 150)
        desktop.wait_for_state("running")
        desktop.press("ctrl+comma")
        settings = desktop.wait_for_window("设置")
        x, y, width, height = desktop.geometry(settings)
        self.assertTrue(x >= 0 and y >= 0 and x + width <= 1920 and y + height <= 1080, (x, y, width, height))


if __name__ == "__main__":
    main()
