"""One process for a user, however often the program is started."""

import fcntl
import os
import shutil

from harness import DesktopTest, holds_for, main, wait_for

BUS_NAME = "com.quillmark.Brevlin"
OBJECT_PATH = "/com/quillmark/Brevlin"
CLOSE_BUTTON = (27, 26)  # of the main window


class OneInstanceTest(DesktopTest):
    def start_again(self):
        """The second start has nothing to say and ends at once."""
        second = self.desktop.start_program()
        self.assertEqual(second.wait(timeout=5), 0, "the second start ends with success")

    def assert_is_in_front(self, first, window):
        desktop = self.desktop
        wait_for("the first one's window in front",
                 lambda: desktop.active_window() == window and desktop.top_window() == window)
        self.assertEqual(desktop.windows(), [window], "there is one window")
        self.assertIsNone(first.poll(), "the first process still runs")

    def assert_second_start_shows_the_window(self):
        """Covered, minimised, closed."""
        desktop = self.desktop
        first, window = self.start_and_wait()
        desktop.cover()
        self.start_again()
        self.assert_is_in_front(first, window)

        desktop.ask("xdotool", "windowminimize", str(window))
        wait_for("a minimised window", lambda: "_NET_WM_STATE_HIDDEN" in desktop.states(window))
        self.start_again()
        self.assert_is_in_front(first, window)

        desktop.click(window, *CLOSE_BUTTON)
        wait_for("a closed window", lambda: not desktop.windows())
        self.start_again()
        window = desktop.wait_for_window()
        self.assert_is_in_front(first, window)
        return first, window


class OneInstance(OneInstanceTest):
    def test_a_second_start_or_the_desktop_shows_the_first_ones_window_with_the_token_of_the_users_action(self):
        desktop = self.desktop
        first, window = self.assert_second_start_shows_the_window()
        for variable, token in (("XDG_ACTIVATION_TOKEN", "of-wayland"), ("DESKTOP_STARTUP_ID", "launcher_TIME0")):
            with self.subTest(variable):
                desktop.cover()
                desktop.environment[variable] = token
                self.start_again()
                self.assert_is_in_front(first, window)
                self.assertIn(f'"{token}"', desktop.ask("xprop", "-id", str(window), "_NET_STARTUP_ID"))
        desktop.cover()
        desktop.bus().call_blocking(BUS_NAME, OBJECT_PATH, "org.freedesktop.Application", "Activate", "a{sv}", [{}])
        self.assert_is_in_front(first, window)
        desktop.bus().call_blocking(BUS_NAME, OBJECT_PATH, "org.freedesktop.Application", "ActivateAction", "sava{sv}",
                                    ["history", [], {}])
        section = desktop.config / "com.quillmark.brevlin.mainSection.json"
        wait_for("the history", lambda: section.exists() and "history" in section.read_text())

    def test_four_starts_at_once_leave_one_process(self):
        processes = [self.desktop.start_program() for _ in range(4)]
        running = wait_for("one process that is left",
                           lambda: [p for p in processes if p.poll() is None]
                           if sum(p.poll() is None for p in processes) == 1 else None)
        self.assertEqual(sorted(p.returncode for p in processes if p not in running), [0, 0, 0])
        window = self.desktop.wait_for_window()
        self.assert_is_in_front(running[0], window)
        holds_for("one window", lambda: self.desktop.windows() == [window], 0.5)

    def test_a_start_while_the_last_one_still_writes_follows_it(self):
        desktop = self.desktop
        first = desktop.start_program("strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=fsync",
                                      "-e", "inject=fsync:delay_enter=1500000")
        window = desktop.wait_for_window()
        desktop.press("space")
        desktop.press("ctrl+q")
        wait_for("no window", lambda: window not in desktop.windows())
        self.assertIsNone(first.poll(), "the timer is not on the disk yet")
        second = desktop.start_program()
        desktop.wait_for_window()
        self.assertEqual(first.poll(), 0)
        self.assertIsNone(second.poll())
        desktop.wait_for_state("running")

    def test_a_refusal_to_start_is_shown(self):
        """The folder is locked by a process that is none of ours."""
        self.desktop.data.mkdir(parents=True)
        descriptor = os.open(self.desktop.data, os.O_RDONLY)
        self.addCleanup(os.close, descriptor)
        fcntl.flock(descriptor, fcntl.LOCK_EX)
        program = self.desktop.start_program()
        self.desktop.wait_for_window("Brevlin 无法启动 · Brevlin cannot start")
        self.desktop.press("Return")
        self.assertEqual(program.wait(timeout=5), 1)


class OneInstanceWithoutBus(OneInstanceTest):
    has_session_bus = False

    def test_without_a_bus_there_is_one_program_also_after_its_folders_were_deleted_and_it_was_killed(self):
        desktop = self.desktop
        first, window = self.assert_second_start_shows_the_window()
        shutil.rmtree(desktop.config)
        shutil.rmtree(desktop.data)
        desktop.cover()
        self.start_again()
        self.assert_is_in_front(first, window)
        desktop.start_phase()

        first.kill()
        first.wait()
        # No lock is left behind, and none is in the other's way where data and configuration lie in one folder.
        desktop.environment["XDG_CONFIG_HOME"] = str(desktop.home / ".local" / "share")
        second, window = self.start_and_wait()
        desktop.cover()
        self.start_again()
        self.assert_is_in_front(second, window)


if __name__ == "__main__":
    main()
