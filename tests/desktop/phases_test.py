"""Phases that end while the program watches, and while it is gone."""

import signal

from harness import DesktopTest, main, now, wait_for


class Phases(DesktopTest):
    def test_a_phase_started_with_space_ends_in_the_history(self):
        desktop = self.desktop
        desktop.set_preferences(focus=3)
        _, window = self.start_and_wait()
        before = now()
        running = desktop.start_phase()
        after = now()
        self.assertTrue(before <= running["startedAt"] <= after, "the phase starts when the key is pressed")
        # Once the controls have changed only the countdown moves.
        wait_for("the first second", lambda: now() > running["startedAt"] + 0.7)
        first_picture = desktop.picture(window)
        wait_for("digits that move", lambda: desktop.picture(window) != first_picture, 1.5)

        record, = desktop.wait_for_records(1)
        noticed = now()
        expected = {"id": running["sessionID"], "phaseRawValue": "focus", "outcomeRawValue": "completed",
                    "completedWhileAway": False, "actualStartAt": running["startedAt"], "effectiveDuration": 3,
                    "endedAt": running["expectedEndAt"], "scheduledEndAt": running["expectedEndAt"]}
        self.assertEqual({**record, **expected}, record)
        self.assertAlmostEqual(record["endedAt"], record["actualStartAt"] + 3, delta=0.0005)
        self.assertLess(noticed - record["endedAt"], 1, "the end is noticed at once")

        ringing = desktop.wait_for_state("ringing")
        self.assertEqual(ringing["phase"], "shortBreak")
        self.assertEqual(ringing["completedFocusCount"], 1)
        for folder in (desktop.config, desktop.data):
            self.assertEqual(folder.stat().st_mode & 0o7777, 0o700, folder)
            for file in folder.iterdir():
                if file.name != "Brevlin.preferences.v1.json":  # the test's own
                    self.assertEqual(file.stat().st_mode & 0o7777, 0o600, file)

    def test_a_phase_goes_on_after_a_kill_and_ends_also_while_the_program_is_gone(self):
        desktop = self.desktop
        desktop.set_preferences(focus=5)
        process, _ = self.start_and_wait()
        running = desktop.start_phase()
        self.assertEqual(desktop.stop(process, signal.SIGKILL), -signal.SIGKILL)
        process, _ = self.start_and_wait()
        self.assertEqual(desktop.timer(), running)
        desktop.stop(process, signal.SIGKILL)
        wait_for("the end of the phase", lambda: now() > running["expectedEndAt"] + 0.1)
        self.assertEqual(desktop.history(), [])

        self.start_and_wait()
        desktop.wait_for_state("ringing")
        record, = desktop.wait_for_records(1)
        expected = {"id": running["sessionID"], "outcomeRawValue": "completedWhileAway", "completedWhileAway": True,
                    "endedAt": running["expectedEndAt"], "scheduledEndAt": running["expectedEndAt"]}
        self.assertEqual({**record, **expected}, record)


if __name__ == "__main__":
    main()
