"""The sections of what is kept: the history is deleted from by mouse and by keyboard, and drawn by the statistics."""

import json
import uuid

from harness import DesktopTest, main, now, wait_for

# Of a bar in the chart, a few pixels.
BAR = bytes((0xE2, 0x4E, 0x66)) * 8


class History(DesktopTest):
    def store_history(self, count):
        end = now() - 60
        records = [{"actualStartAt": end - 1500 * (index + 1), "completedWhileAway": False, "cycleIndex": 1,
                    "effectiveDuration": 1400, "endedAt": end - 1500 * index, "id": str(uuid.uuid4()).upper(),
                    "intention": "", "interruptionCount": 0, "outcomeRawValue": "completed", "pauseDuration": 0,
                    "phaseRawValue": "focus", "plannedDuration": 1500, "plannedStartAt": end - 1500 * (index + 1),
                    "scheduledEndAt": end - 1500 * index, "timeZoneIdentifierAtStart": "UTC"}
                   for index in range(count)]
        self.desktop.data.mkdir(mode=0o700, parents=True)
        (self.desktop.data / "sessions-v1.json").write_text(json.dumps({"sessions": records, "version": 1}))
        return [record["id"] for record in records]

    def identifiers(self):
        return [record["id"] for record in self.desktop.history()]

    def chart(self, window):
        """Without the title of the period."""
        return self.desktop.picture(window, "-crop", "920x520+0+125", "+repage")

    def test_a_record_is_deleted_by_mouse_and_by_keyboard_and_the_statistics_show_the_others(self):
        desktop = self.desktop
        first, second, third, fourth = self.store_history(4)
        desktop.set_preferences(focus=4, capsule=False)
        _, window = self.start_and_wait()
        desktop.start_phase()
        before = desktop.picture(window)
        desktop.click(window, 185, 27)
        wait_for("the history", lambda: desktop.picture(window) != before)

        # The phase's record comes first, with its day: at the top, what is new comes into view.
        finished = desktop.wait_for_records(5)[0]["id"]
        self.assertEqual(self.identifiers(), [finished, first, second, third, fourth])

        row = 50 + 24 + 44 + 55 // 2  # the middle of the first row
        before = desktop.picture(window)
        desktop.ask("xdotool", "mousemove", "--window", str(window), "400", str(row + 55), "click", "3")
        wait_for("the menu", lambda: desktop.picture(window) != before)
        desktop.press("Down", "Return")
        wait_for("one record less", lambda: self.identifiers() == [finished, second, third, fourth])

        desktop.press("Down", "Delete")  # the row below the one that moved up
        wait_for("two records less", lambda: self.identifiers() == [finished, second, fourth])
        desktop.press("Menu")
        desktop.press("Escape", "shift+F10", "Down", "Return")
        wait_for("three records less", lambda: self.identifiers() == [finished, second])

        desktop.click(window, 240, 27)
        desktop.move_pointer(0, 0)
        wait_for("the bars of the week", lambda: BAR in self.chart(window))
        week = self.chart(window)
        desktop.press("4")
        wait_for("the year, without bars", lambda: BAR not in self.chart(window))
        desktop.press("2")
        wait_for("the same week", lambda: self.chart(window) == week)


if __name__ == "__main__":
    main()
