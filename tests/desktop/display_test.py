"""A session that ends, a display that dies, or was never there."""

import signal

from harness import PROGRAM, DesktopTest, main, now, wait_for

# Half a second for each of the two that a document needs.
SLOW_DISK = ("strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=fsync", "-e", "inject=fsync:delay_enter=500000")


class Display(DesktopTest):
    def store_a_phase(self, seconds, **preferences):
        self.desktop.set_preferences(short_break=1500, auto_start=True, **preferences)
        self.timer = {"phase": "focus", "runState": "running", "sessionID": "0F8FAD5B-D9CB-469F-A165-70867728950E",
                      "startedAt": now(), "expectedEndAt": now() + seconds, "plannedDuration": seconds,
                      "accumulatedPauseSeconds": 0, "interruptionCount": 0, "completedFocusCount": 0,
                      "timeZoneIdentifierAtStart": "Etc/UTC"}
        self.desktop.store_timer(self.timer)

    def wait_for_a_busy_disk(self):
        wait_for("the end of the phase", lambda: now() > self.timer["expectedEndAt"] + 0.2)
        self.assertNotEqual(self.desktop.windows(), [], "the session goes on")
        self.assertEqual(self.desktop.history(), [], "the disk is still busy with the record")

    def assert_nothing_is_lost(self):
        record, = self.desktop.history()
        self.assertEqual(record["endedAt"], self.timer["expectedEndAt"])
        left = self.desktop.timer()
        self.assertEqual((left["phase"], left["runState"]), ("shortBreak", "running"))
        return left

    def test_a_display_that_dies_loses_nothing_and_the_next_start_goes_on(self):
        desktop = self.desktop
        self.store_a_phase(4)
        program = desktop.start_program(*SLOW_DISK)
        desktop.wait_for_window()
        self.wait_for_a_busy_disk()
        desktop.stop(desktop.display)
        self.assertEqual(program.wait(timeout=5), 1)
        left = self.assert_nothing_is_lost()

        desktop.start_display()
        self.start_and_wait()
        self.assertEqual(desktop.timer(), left)
        self.assertEqual(len(desktop.history()), 1)

    def test_the_end_of_the_session_waits_for_the_disk_and_a_checkpoint_ends_nothing(self):
        desktop = self.desktop
        self.store_a_phase(4)
        (desktop.home / ".xsmstartup").write_text(" ".join([*SLOW_DISK, PROGRAM]) + "\n")
        manager = desktop.run_in_background(["xsm"])
        desktop.wait_for_window()
        manager.send_signal(signal.SIGUSR1)
        self.wait_for_a_busy_disk()
        self.assertEqual(desktop.stop(manager), 0, "it ends when all its programs have")
        self.assertEqual(desktop.windows(), [])
        self.assert_nothing_is_lost()

    def test_without_a_screen_the_timer_runs_and_quitting_is_orderly(self):
        self.desktop.environment["QT_QPA_PLATFORM"] = "offscreen"
        self.store_a_phase(2, sound=True)
        program = self.desktop.start_program()
        self.desktop.wait_for_records(1)
        wait_for("the next phase", lambda: self.desktop.timer()["phase"] == "shortBreak")
        self.assertEqual(self.desktop.stop(program), 0)

    def test_a_start_without_a_display_is_refused_in_words(self):
        self.desktop.environment["DISPLAY"] = ":99999"
        self.assertEqual(self.desktop.start_program().wait(timeout=5), 1)
        self.assertIn("cannot reach the display", self.desktop.output_of("brevlin"))


if __name__ == "__main__":
    main()
