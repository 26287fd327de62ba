"""The statistics of the running program: its keys, and a phase that ends while they are open."""

import json
import pathlib
import sys
import time

from harness import DesktopTest, main, wait_for

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))

from make_history import make_history  # noqa: E402

BAR = bytes((0xE2, 0x4E, 0x66)) * 8
SECTION_KEY = "com.quillmark.brevlin.mainSection"


class Statistics(DesktopTest):
    def open(self, records):
        desktop = self.desktop
        desktop.set_preferences(focus=5, language="english")
        (desktop.config / f"{SECTION_KEY}.json").write_text('"statistics"')
        desktop.data.mkdir(mode=0o700, parents=True)
        document = make_history(records, 500, time.time(), 5, "UTC")
        (desktop.data / "sessions-v1.json").write_text(json.dumps(document))
        _, window = self.start_and_wait()
        desktop.move_pointer(0, 0)
        if records:
            # The window comes before the history has been read.
            wait_for("the bars of the week", lambda: BAR in self.picture(window))
        return window

    def picture(self, window):
        """Without the title of the period, and without what the capsule may cover."""
        return self.desktop.picture(window, "-crop", "920x520+0+125", "+repage")

    def settled_picture(self, window, other_than=None):
        """The picture once nothing moves any more, and once it is another one."""
        def ask():
            picture = self.picture(window)
            time.sleep(0.15)  # a figure that fades takes 40 ms a step
            return picture if picture == self.picture(window) and picture != other_than else None

        return wait_for("a picture that stands still", ask)

    def test_keys_move_through_the_statistics_and_back(self):
        desktop = self.desktop
        window = self.open(1500)
        week = self.settled_picture(window)
        shown = {"2": week}
        before = week
        for key in ("1", "3", "4"):
            desktop.press(key)
            before = shown[key] = self.settled_picture(window, before)
        self.assertEqual(len(set(shown.values())), 4, "every period has its own picture")
        desktop.press("2")
        wait_for("this week after the year", lambda: self.picture(window) == week)
        desktop.press("Left")
        self.settled_picture(window, other_than=week)
        desktop.press("Right")
        wait_for("this week again", lambda: self.picture(window) == week)
        desktop.press("Right")
        self.assertEqual(self.settled_picture(window), week, "there is nothing beyond the present")
        desktop.press("Left", "Left", "Left", "Home")
        wait_for("this week after Home", lambda: self.picture(window) == week)

    def test_a_phase_that_ends_appears_in_the_open_statistics(self):
        desktop = self.desktop
        window = self.open(0)
        self.settled_picture(window)
        desktop.press("4")
        empty = self.settled_picture(window)
        # The tabs of the top bar: the timer is started in its own section.
        desktop.click(window, 134, 25)
        self.settled_picture(window, empty)
        desktop.press("space")
        desktop.wait_for_state("running")
        desktop.click(window, 294, 25)
        desktop.press("4")
        desktop.move_pointer(0, 0)
        wait_for("the empty year", lambda: self.picture(window) == empty)
        desktop.wait_for_records(1)
        self.settled_picture(window, empty)


if __name__ == "__main__":
    main()
