"""The data section of the settings: the history goes out, comes in once, and comes back from its backup."""

import datetime
import json
import subprocess

from harness import PROGRAM, DesktopTest, main, wait_for

TOGGL = """User,Description,Start date,Start time,End date,End time,Duration
A,"Write, again",2026-01-31,09:00:00,2026-01-31,09:25:00,18:25 min
A,Letters,2026-01-31,10:00:00,2026-01-31,10:25:00,
A,,2026-01-31,11:00:00,,,
"""


class Data(DesktopTest):
    def start_with_a_record(self):
        desktop = self.desktop
        desktop.set_preferences(capsule=False, language="english")
        _, window = self.start_and_wait()
        desktop.start_phase()
        desktop.wait_for_records(1)
        desktop.wait_for_state("ringing")
        return window

    def open_settings(self, backwards):
        """The settings, with the keyboard on the control so far from their end."""
        self.desktop.press("ctrl+comma")
        self.desktop.wait_for_window("Settings")
        self.desktop.press(*["shift+Tab"] * backwards, "space")

    def backups(self):
        return sorted((self.desktop.home / ".local/state/Brevlin/backups/default").glob("sessions-*.json"))

    def type_path(self, title, path):
        self.desktop.wait_for_window(title)
        self.desktop.press("ctrl+a")
        self.desktop.ask("xdotool", "type", "--delay", "5", str(path))
        self.desktop.press("Return")

    def choose_import(self, path):
        self.open_settings(3)
        self.type_path("Choose a File to Import", path)

    def test_a_file_is_imported_once_and_taken_back_in_one_step(self):
        desktop = self.desktop
        self.start_with_a_record()
        file = desktop.folder / "toggl.csv"
        file.write_text(TOGGL)
        self.choose_import(file)
        desktop.wait_for_window("Import Records")
        desktop.press("Return")
        desktop.wait_for_records(3)
        self.assertEqual({record["intention"] for record in desktop.history()}, {"", "Write, again", "Letters"})
        wait_for("no dialog", lambda: not desktop.windows("Import Records"))
        before = (desktop.data / "sessions-v1.json").read_bytes()
        desktop.press("space")  # the button again
        self.type_path("Choose a File to Import", file)
        desktop.wait_for_window("Import Records")
        desktop.press("Return")  # there is nothing but Close
        wait_for("no dialog", lambda: not desktop.windows("Import Records"))
        self.assertEqual((desktop.data / "sessions-v1.json").read_bytes(), before)
        desktop.press("Escape", "ctrl+z")
        wait_for("the history of before", lambda: len(desktop.history()) == 1)

    def test_the_first_record_of_a_day_brings_a_backup_that_brings_it_back(self):
        desktop = self.desktop
        window = self.start_with_a_record()
        today = datetime.datetime.now(datetime.timezone.utc).date()
        copy, = wait_for("a backup", self.backups)
        self.assertIn(copy.name, [f"sessions-{today - datetime.timedelta(days=back)}.json" for back in (0, 1)])
        self.assertEqual(copy.read_bytes(), (desktop.data / "sessions-v1.json").read_bytes())
        self.assertEqual((copy.stat().st_mode & 0o777, copy.parent.stat().st_mode & 0o777), (0o600, 0o700))
        record, = desktop.history()
        desktop.press("Escape")
        desktop.click(window, 207, 27)
        desktop.press("Tab", "Tab", "Return", "Delete")
        wait_for("a deletion", lambda: not desktop.history())
        self.open_settings(1)  # there is nothing to clear
        desktop.wait_for_window("Restore a Backup")
        desktop.press("Return")
        wait_for("the record", lambda: desktop.history() == [record])
        desktop.press("Escape", "ctrl+z")
        wait_for("the deletion", lambda: not desktop.history())

    def test_a_file_from_the_settings_is_the_one_of_the_command(self):
        desktop = self.desktop
        self.start_with_a_record()
        self.open_settings(4)
        desktop.wait_for_window("Export Records")
        desktop.press("Tab", "Tab", "Tab", "space")  # the mark for Excel
        desktop.press("Tab", "Tab", "Return")
        file = desktop.folder / "out.csv"
        self.type_path("Save Export", file)
        dialog = desktop.wait_for_window("Exported")
        command = subprocess.run([PROGRAM, "export", "--byte-order-mark"], env=desktop.environment, check=True,
                                 stdout=subprocess.PIPE).stdout
        self.assertEqual(file.read_bytes(), command)
        desktop.press("Return")
        wait_for("no dialog", lambda: dialog not in desktop.windows())


if __name__ == "__main__":
    main()
