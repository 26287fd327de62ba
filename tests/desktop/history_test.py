"""The sections of what is kept: the history is deleted from by mouse and by keyboard, and drawn by the statistics."""

import json
import uuid

from harness import DesktopTest, main, now, wait_for

START_NEXT_PLACE = (513, 578)
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

        row = 50 + 46 + 24 + 44 + 55 // 2  # the middle of the first row
        before = desktop.picture(window)
        desktop.ask("xdotool", "mousemove", "--window", str(window), "400", str(row + 55), "click", "3")
        wait_for("the menu", lambda: desktop.picture(window) != before)
        desktop.press("Up", "Return")  # the last entry
        wait_for("one record less", lambda: self.identifiers() == [finished, second, third, fourth])

        desktop.press("Down", "Delete")  # the row below the one that moved up
        wait_for("two records less", lambda: self.identifiers() == [finished, second, fourth])
        desktop.press("Menu")
        desktop.press("Escape", "shift+F10", "Up", "Return")
        wait_for("three records less", lambda: self.identifiers() == [finished, second])
        for left in ([finished, second, fourth], [finished, second, third, fourth], [finished, first, second, third, fourth]):
            desktop.press("ctrl+z")
            wait_for("a record that is back", lambda: self.identifiers() == left)
        for _ in range(3):
            desktop.press("ctrl+shift+z")
        wait_for("the three gone again", lambda: self.identifiers() == [finished, second])

        desktop.click(window, 240, 27)
        desktop.move_pointer(0, 0)
        wait_for("the bars of the week", lambda: BAR in self.chart(window))
        week = self.chart(window)
        desktop.press("4")
        wait_for("the year, without bars", lambda: BAR not in self.chart(window))
        desktop.press("2")
        wait_for("the same week", lambda: self.chart(window) == week)

    def test_what_a_phase_is_for_is_typed_offered_recorded_found_and_corrected(self):
        desktop = self.desktop
        desktop.set_preferences(focus=4, capsule=False, language="english")
        _, window = self.start_and_wait()
        desktop.press("Tab", "Tab")  # past the sections
        desktop.ask("xdotool", "type", "--delay", "20", "Write 2 pages #thesis")
        self.assertEqual(desktop.timer()["runState"], "idle", "Space and digits are text")
        desktop.press("Return")
        running = desktop.wait_for_state("running")
        self.assertEqual(running["intention"], "Write 2 pages #thesis")
        record, = desktop.wait_for_records(1)
        self.assertEqual(record["intention"], "Write 2 pages #thesis")

        # The next focus phase: the same is offered, and taken by arrow and Return alone.
        desktop.wait_for_state("ringing")
        desktop.click(window, *START_NEXT_PLACE)
        desktop.wait_for_records(2)
        desktop.wait_for_state("ringing")
        desktop.press("Tab", "Tab")
        desktop.ask("xdotool", "type", "--delay", "20", "pag")
        desktop.press("Down", "Return", "Escape")
        desktop.click(window, *START_NEXT_PLACE)
        wait_for("the phase", lambda: (desktop.timer() or {}).get("intention") == "Write 2 pages #thesis")
        desktop.wait_for_records(3)

        desktop.click(window, 210, 27)
        before = desktop.picture(window)
        desktop.press("ctrl+f")
        desktop.ask("xdotool", "type", "--delay", "20", "#the")
        wait_for("what was found", lambda: desktop.picture(window) != before)
        desktop.press("Return", "Return")  # to the list, and the latest record of the two
        dialog = desktop.wait_for_window("Edit Record")
        desktop.press("ctrl+a")
        desktop.ask("xdotool", "type", "--delay", "20", "Answer letters")
        desktop.press("Return")
        wait_for("the correction", lambda: desktop.history()[0]["intention"] == "Answer letters")
        self.assertNotIn(dialog, desktop.windows())
        self.assertEqual(desktop.history()[2]["intention"], "Write 2 pages #thesis")
        desktop.press("ctrl+z")
        wait_for("what was before", lambda: desktop.history()[0]["intention"] == "Write 2 pages #thesis")


if __name__ == "__main__":
    main()
