"""The main window under a real window manager: quitting, place and size, light and dark."""

import signal

from harness import DesktopTest, main, wait_for

import dbus

PORTAL = "org.freedesktop.portal.Desktop"
PORTAL_PATH = "/org/freedesktop/portal/desktop"
SETTINGS = "org.freedesktop.portal.Settings"
APPEARANCE = "org.freedesktop.appearance"
LIGHT, DARK = dbus.UInt32(2), dbus.UInt32(1)


class MainWindow(DesktopTest):
    def test_a_window_that_nobody_moved_is_centred_however_the_last_run_was_ended(self):
        desktop = self.desktop
        for number in (None, signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number):
                process, window = self.start_and_wait()
                x, y, width, height = desktop.geometry(window)
                self.assertEqual((width, height), (922, 652), "920 x 650 and a hairline")
                self.assertLessEqual(abs(2 * x + width - 1280), 4)
                self.assertLessEqual(abs(2 * y + height - 900), 4)
                if number:
                    process.send_signal(number)
                else:
                    desktop.press("ctrl+q")
                self.assertEqual(process.wait(timeout=5), 0)

    def test_place_and_size_outlive_a_full_screen_and_the_program_and_are_held_to_the_screen(self):
        desktop = self.desktop
        process, window = self.start_and_wait()
        desktop.ask("xdotool", "windowsize", str(window), "1000", "700")
        desktop.ask("xdotool", "windowmove", str(window), "130", "70")
        placed = (130, 70, 1000, 700)
        wait_for("a moved window", lambda: desktop.geometry(window) == placed)
        desktop.press("F11")
        wait_for("a full screen", lambda: "_NET_WM_STATE_FULLSCREEN" in desktop.states(window)
                 and desktop.geometry(window) == (0, 0, 1280, 900))
        desktop.press("F11")
        wait_for("the window as before", lambda: "_NET_WM_STATE_FULLSCREEN" not in desktop.states(window)
                 and desktop.geometry(window) == placed)
        # Quitting at once must not lose what the delayed save has not written yet.
        desktop.press("ctrl+q")
        self.assertEqual(process.wait(timeout=5), 0)

        process, window = self.start_and_wait()
        wait_for("the window at its place", lambda: desktop.geometry(window) == placed)
        desktop.ask("xdotool", "windowsize", str(window), "300", "200")
        wait_for("a window at its least size", lambda: desktop.geometry(window)[2:] == (802, 572))
        desktop.stop(process)
        (desktop.config / "com.quillmark.brevlin.mainWindow.json").write_text(
            '{"x":-50000,"y":7,"width":100000,"height":100000,"maximized":false}')
        _, window = self.start_and_wait()
        self.assertEqual(desktop.geometry(window), (0, 0, 1280, 900))

    def start_in_the_dark(self):
        """Gives what asks for the brightness of the window."""
        _, window = self.start_and_wait()

        def canvas():
            return max(self.desktop.pixel(window, 12, 80))

        self.assertLess(wait_for("a painted canvas", canvas), 64, "dark from the first picture on")
        return canvas

    def test_light_and_dark_follow_the_desktop_at_once(self):
        portal = self.desktop.start_mock("--session", PORTAL, PORTAL_PATH, SETTINGS, name=PORTAL, path=PORTAL_PATH)

        def choose(scheme):
            portal.AddMethod(SETTINGS, "ReadAll", "as", "a{sa{sv}}",
                             f"ret = {{'{APPEARANCE}': {{'color-scheme': dbus.UInt32({scheme})}}}}")
            portal.EmitSignal(SETTINGS, "SettingChanged", "ssv", [APPEARANCE, "color-scheme", scheme])

        choose(DARK)
        canvas = self.start_in_the_dark()
        choose(LIGHT)
        wait_for("a light canvas", lambda: canvas() > 220)
        choose(DARK)
        wait_for("a dark canvas", lambda: canvas() < 64)

    def test_without_a_portal_a_dark_gtk_theme_is_followed(self):
        settings = self.desktop.home / ".xsettingsd"
        settings.write_text('Net/ThemeName "BlackMATE"\n')
        daemon = self.desktop.run_in_background(["xsettingsd"])
        wait_for("the X settings", lambda: "1 setting" in self.desktop.output_of("xsettingsd"))
        canvas = self.start_in_the_dark()
        settings.write_text('Net/ThemeName "Menta"\n')
        daemon.send_signal(signal.SIGHUP)
        wait_for("a light canvas", lambda: canvas() > 220)


class SmallScreen(DesktopTest):
    """A full-HD laptop at 200 %: 960 x 540 points, less than the window's least size."""

    screen = "1920x1080"

    def assert_is_whole(self, window):
        x, y, width, height = self.desktop.geometry(window)
        self.assertTrue(x >= 0 and y >= 0 and x + width <= 1920 and y + height <= 1080, (x, y, width, height))
        wait_for("the icon", lambda: "Icon (128 x 128)" in self.desktop.ask("xprop", "-id", str(window), "_NET_WM_ICON"))

    def test_on_a_low_screen_every_control_is_reached_in_windows_that_bear_the_icon(self):
        desktop = self.desktop
        desktop.environment["QT_SCALE_FACTOR"] = "2"
        _, window = self.start_and_wait()
        self.assert_is_whole(window)
        _, _, width, height = desktop.geometry(window)
        middle = str(width // 2)
        desktop.ask("xdotool", "mousemove", "--window", str(window), middle, "600",
                    "click", "--repeat", "20", "--delay", "10", "5")
        # The last of the window is the card's padding below its buttons.
        desktop.click(window, middle, height - 112)
        desktop.wait_for_state("running")
        desktop.press("ctrl+comma")
        self.assert_is_whole(desktop.wait_for_window("设置"))


if __name__ == "__main__":
    main()
