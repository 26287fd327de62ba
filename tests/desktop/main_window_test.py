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
        portal.AddMethod(SETTINGS, "ReadAll", "as", "a{sa{sv}}",
                         f"ret = {{'{APPEARANCE}': {{'color-scheme': dbus.UInt32({DARK})}}}}")
        _, window = self.start_and_wait()

        def canvas():
            return max(desktop.pixel(window, 12, 80))

        self.assertLess(wait_for("a painted canvas", canvas), 64, "dark from the first picture on")
        portal.EmitSignal(SETTINGS, "SettingChanged", "ssv", [APPEARANCE, "color-scheme", LIGHT])
        wait_for("a light canvas", lambda: canvas() > 220)
        portal.EmitSignal(SETTINGS, "SettingChanged", "ssv", [APPEARANCE, "color-scheme", DARK])
        wait_for("a dark canvas", lambda: canvas() < 64)


if __name__ == "__main__":
    main()
