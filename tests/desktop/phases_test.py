"""Phases that end while the program watches, and while it is gone."""

import os
import signal

from harness import DesktopTest, main, now, permissions, wait_for


class Phases(DesktopTest):
    def test_a_phase_started_with_space_ends_in_the_history(self):
        desktop = self.desktop
        desktop.set_preferences(focus=3)
        _, window = self.start_and_wait()
        before = now()
        desktop.press("space")
        running = desktop.wait_for_state("running")
        after = now()
        self.assertTrue(before <= running["startedAt"] <= after, "the phase starts when the key is pressed")
        # Once the controls have changed only the countdown moves.
        wait_for("the first second", lambda: now() > running["startedAt"] + 0.7)
        first_picture = desktop.picture(window)
        wait_for("digits that move", lambda: desktop.picture(window) != first_picture, 1.5)

        record, = desktop.wait_for_records(1)
        noticed = now()
        self.assertEqual(record["id"], running["sessionID"])
        self.assertEqual(record["phaseRawValue"], "focus")
        self.assertEqual(record["outcomeRawValue"], "completed")
        self.assertFalse(record["completedWhileAway"])
        self.assertEqual(record["actualStartAt"], running["startedAt"])
        self.assertEqual(record["endedAt"], record["scheduledEndAt"])
        self.assertEqual(record["endedAt"], running["expectedEndAt"])
        self.assertAlmostEqual(record["endedAt"], record["actualStartAt"] + 3, delta=0.0005)
        self.assertEqual(record["effectiveDuration"], 3)
        self.assertLess(noticed - record["endedAt"], 1, "the end is noticed at once")

        ringing = desktop.wait_for_state("ringing")
        self.assertEqual(ringing["phase"], "shortBreak")
        self.assertEqual(ringing["completedFocusCount"], 1)
        for folder in (desktop.config, desktop.data):
            self.assertEqual(permissions(folder), 0o700, folder)
            for file in folder.iterdir():
                if file.name != "Brevlin.preferences.v1.json":  # the test's own
                    self.assertEqual(permissions(file), 0o600, file)

    def test_a_phase_goes_on_after_a_kill_and_ends_also_while_the_program_is_gone(self):
        desktop = self.desktop
        desktop.set_preferences(focus=5)
        process, _ = self.start_and_wait()
        desktop.press("space")
        running = desktop.wait_for_state("running")
        self.assertEqual(desktop.stop(process, signal.SIGKILL), -signal.SIGKILL)
        process, _ = self.start_and_wait()
        self.assertEqual(desktop.timer(), running)
        desktop.stop(process, signal.SIGKILL)
        wait_for("the end of the phase", lambda: now() > running["expectedEndAt"] + 0.1)
        self.assertEqual(desktop.history(), [])

        self.start_and_wait()
        desktop.wait_for_state("ringing")
        record, = desktop.wait_for_records(1)
        self.assertEqual(record["id"], running["sessionID"])
        self.assertEqual(record["outcomeRawValue"], "completedWhileAway")
        self.assertTrue(record["completedWhileAway"])
        self.assertEqual(record["endedAt"], running["expectedEndAt"])
        self.assertEqual(record["scheduledEndAt"], running["expectedEndAt"])

    def test_a_phase_whose_end_is_noticed_late_without_sleep_is_just_completed(self):
        desktop = self.desktop
        desktop.set_preferences(focus=2)
        process, _ = self.start_and_wait()
        desktop.press("space")
        running = desktop.wait_for_state("running")
        # A machine too busy to let the program run; a second start activates it as soon as it does.
        process.send_signal(signal.SIGSTOP)
        second = desktop.start_program()
        wait_for("the end of the phase", lambda: now() > running["expectedEndAt"] + 1.2)
        self.assertEqual(desktop.history(), [])
        process.send_signal(signal.SIGCONT)
        record, = desktop.wait_for_records(1)
        self.assertEqual(record["outcomeRawValue"], "completed")
        self.assertFalse(record["completedWhileAway"])
        self.assertEqual(record["endedAt"], running["expectedEndAt"])
        self.assertEqual(second.wait(timeout=10), 0)


class UnwritableHistory(DesktopTest):
    def test_a_record_that_cannot_be_saved_is_told_and_saved_when_there_is_room(self):
        desktop = self.desktop
        desktop.set_preferences(focus=1, short_break=1)
        desktop.data.mkdir(mode=0o700, parents=True)
        if os.geteuid() == 0:  # who may write anywhere
            desktop.become_other_user()
        desktop.data.chmod(0o500)
        self.start_and_wait()
        desktop.press("space")
        desktop.wait_for_window("记录保存失败")
        self.assertEqual(desktop.wait_for_state("ringing")["phase"], "shortBreak")
        self.assertEqual(list(desktop.data.iterdir()), [])

        desktop.press("Return")
        wait_for("a closed alert", lambda: not desktop.windows("记录保存失败"))
        desktop.wait_for_window()
        desktop.data.chmod(0o700)
        desktop.press("shift+Tab", "space")  # the last control starts the break
        # The refused record is not given up.
        records = desktop.wait_for_records(2)
        self.assertEqual([record["phaseRawValue"] for record in records], ["shortBreak", "focus"])
        self.assertEqual(desktop.wait_for_state("ringing")["phase"], "focus")


if __name__ == "__main__":
    main()
