"""What a person sees of a phase's end while the window is closed, with a real notification server."""

import json
import shlex
import signal
import uuid

from harness import REFERENCE_DATE, DesktopTest, holds_for, main, now, read_json, wait_for

START_NEXT = "Start next phase"
STOP = "Stop alert"

# Where the window has the buttons of a phase that waits, in pixels from its corner.
SKIP_PLACE = (403, 578)
START_NEXT_PLACE = (513, 578)
# Where it asks about time away.
DO_NOT_COUNT_PLACE = (708, 94)

LOGGING_SCRIPT = """#!/bin/sh
printf '%s|%s|%s|%s|%s\\n' "$DUNST_SUMMARY" "$DUNST_BODY" "$DUNST_URGENCY" "$DUNST_DESKTOP_ENTRY" "$DUNST_TIMEOUT" >> {log}
"""
# Keeps what it was offered, and chooses the line that has the wanted label.
MENU_SCRIPT = """#!/bin/sh
cat > {offered}.new && mv {offered}.new {offered}
grep -F -- "$(cat {wanted})" {offered}
"""
DUNST_SETTINGS = """[global]
dmenu = {menu}
mouse_left_click = do_action
mouse_right_click = close_current
markup = full
[log]
appname = *
script = {script}
"""


class Dunst:
    """The notification server dunst and the user in front of it."""

    def __init__(self, desktop):
        self.desktop = desktop
        folder = desktop.folder
        self.log, self.offered, self.wanted = folder / "shown", folder / "offered", folder / "wanted"
        self.settings = folder / "dunstrc"
        self.process = None
        self.write_script(folder / "script", LOGGING_SCRIPT)
        self.write_script(folder / "menu", MENU_SCRIPT)
        self.settings.write_text(DUNST_SETTINGS.format(menu=folder / "menu", script=folder / "script"))

    def write_script(self, path, text):
        paths = {name: shlex.quote(str(getattr(self, name))) for name in ("log", "offered", "wanted")}
        path.write_text(text.format(**paths))
        path.chmod(0o700)

    def start(self):
        self.process = self.desktop.run_in_background(["dunst", "-conf", str(self.settings)])
        connection = self.desktop.bus()
        wait_for("dunst on the bus", lambda: connection.name_has_owner("org.freedesktop.Notifications"))

    def kill(self):
        self.process.kill()
        self.process.wait()

    def count(self):
        """How many notifications are on the screen."""
        return int(self.desktop.ask("dunstctl", "count", "displayed") or -1)

    def shown(self):
        """Everything that was ever shown: title, body, urgency, desktop entry, time to live."""
        return [line.split("|") for line in self.log.read_text().splitlines()] if self.log.exists() else []

    def buttons(self):
        """Labels, as the user finds them in dunst's menu."""
        self.choose("no such label")
        return [line.split(" (")[0].lstrip("#") for line in self.offered.read_text().splitlines()]

    def choose(self, label):
        self.wanted.write_text(label)
        self.offered.unlink(missing_ok=True)
        self.desktop.ask("dunstctl", "context")
        wait_for("dunst's menu", self.offered.exists)

    def click(self, button="1"):
        window = self.desktop.ask("xdotool", "search", "--onlyvisible", "--class", "Dunst").split()[0]
        self.desktop.ask("xdotool", "mousemove", "--window", window, "40", "20", "click", button)


class Notifications(DesktopTest):
    def setUp(self):
        super().setUp()
        self.server = Dunst(self.desktop)

    def start(self, **preferences):
        self.desktop.set_preferences(language="english", **preferences)
        self.process, self.window = self.start_and_wait()

    def wait_for_empty_screen(self):
        wait_for("an empty screen", lambda: self.server.count() == 0, 2)

    def wait_for_banner(self, count=1):
        wait_for(f"notification {count}", lambda: len(self.server.shown()) >= count, 15)
        wait_for("one notification on the screen", lambda: self.server.count() == 1, 2)

    def end_a_phase(self):
        """Brevlin in the background, a focus phase over, its end announced."""
        self.server.start()
        self.start()
        self.desktop.start_phase()
        self.desktop.press("ctrl+w")
        wait_for("a closed window", lambda: not self.desktop.windows())
        self.desktop.wait_for_state("ringing")
        self.wait_for_banner()

    def click_in_window(self, place):
        self.desktop.start_program().wait(timeout=5)
        window = self.desktop.wait_for_window()
        self.desktop.click(window, *place)

    def end_another_phase(self, count):
        self.click_in_window(START_NEXT_PLACE)
        self.wait_for_banner(count)

    def test_an_end_is_announced_and_stays_until_the_user_reacts(self):
        self.end_a_phase()
        self.assertEqual(self.server.shown(), [["Focus complete", "Focus is complete. Ready for the next phase.", "NORMAL",
                                                "com.quillmark.Brevlin", "0"]])
        buttons = [label for label in self.server.buttons() if label]
        self.assertCountEqual(buttons, [START_NEXT, STOP])  # dunst keeps no order
        holds_for("the announcement", lambda: self.server.count() == 1, 2)
        self.assertEqual(len(self.server.shown()), 1, "it is shown once")

        self.server.choose(START_NEXT)
        self.assertEqual(self.desktop.wait_for_state("running", 2)["phase"], "shortBreak")
        self.wait_for_empty_screen()
        self.wait_for_banner(2)
        self.assertEqual(self.server.shown()[1][0], "Break complete")

        self.server.click()
        self.desktop.wait_for_window()
        for count, react in ((3, lambda: self.server.choose(STOP)), (4, lambda: self.server.click("3"))):
            self.wait_for_empty_screen()
            self.assertEqual(self.desktop.timer()["runState"], "ringing")
            self.end_another_phase(count)
            react()
        self.wait_for_empty_screen()
        self.assertEqual(self.desktop.timer()["runState"], "ringing")
        self.assertEqual(len(self.desktop.history()), 4)

    def test_going_on_in_the_window_or_quitting_takes_the_announcement_away(self):
        self.end_a_phase()
        self.click_in_window(SKIP_PLACE)
        self.wait_for_empty_screen()
        self.assertEqual(self.desktop.timer()["runState"], "ringing")
        self.end_another_phase(2)
        self.click_in_window(START_NEXT_PLACE)
        self.desktop.wait_for_state("running")
        self.wait_for_empty_screen()
        self.wait_for_banner(3)
        self.desktop.stop(self.process)
        self.wait_for_empty_screen()

    def test_nothing_is_lost_when_the_server_is_killed_and_started_again(self):
        self.server.start()
        self.start(focus=4)
        self.desktop.start_phase()
        self.server.kill()
        self.server.start()
        self.wait_for_banner()
        self.assertEqual(self.server.shown()[0][0], "Focus complete")
        self.server.kill()
        self.server.start()
        self.wait_for_banner(2)
        self.server.choose(START_NEXT)
        self.desktop.wait_for_state("running", 2)

    def start_logind(self):
        self.desktop.start_bus("DBUS_SYSTEM_BUS_ADDRESS")
        return self.desktop.start_mock("--system", "--template", "logind", variable="DBUS_SYSTEM_BUS_ADDRESS",
                                       name="org.freedesktop.login1", path="/org/freedesktop/login1")

    def details(self):
        return read_json(self.desktop.data / "session-details-v1.json")["details"]

    def sleep_through_five_minutes(self):
        """Of a focus phase. The sleep of the test goes on where a stored one has just ended, so that nobody waits."""
        logind = self.start_logind()
        self.server.start()
        phase, self.left = str(uuid.uuid4()).upper(), now() - 300
        self.desktop.store_timer({"phase": "focus", "runState": "running", "plannedDuration": 1500, "sessionID": phase,
                                  "startedAt": now() - 600, "expectedEndAt": now() + 900, "accumulatedPauseSeconds": 0,
                                  "interruptionCount": 0, "completedFocusCount": 0})
        self.desktop.data.mkdir(mode=0o700, parents=True)
        (self.desktop.data / "session-details-v1.json").write_text(json.dumps({"details": [
            {"absences": [{"decision": "undecided", "end": now() + 5, "start": self.left}], "asRecorded": None,
             "beforeAbsences": None, "id": phase, "pauses": []}], "version": 1}))
        self.start(focus=1500)
        for is_asleep in (True, True, False, False):  # as elogind tells it
            logind.EmitSignal("org.freedesktop.login1.Manager", "PrepareForSleep", "b", [is_asleep])
        self.wait_for_banner()

    def test_time_away_is_asked_about_once_and_the_answer_of_the_notification_counts(self):
        self.sleep_through_five_minutes()
        (title, body, *_), = self.server.shown()
        self.assertRegex(title, r"^You were away from \d\d:\d\d to \d\d:\d\d\.$")
        self.assertEqual(body, "Does this time count as focus?")
        end = f"End at {title.split()[4]}"
        self.assertCountEqual([label for label in self.server.buttons() if label], ["Keep", "Do not count", end])
        holds_for("the question", lambda: self.server.count() == 1, 1)
        self.server.choose(end)
        record, = self.desktop.wait_for_records(1)
        self.assertEqual((record["outcomeRawValue"], record["endedAt"]), ("endedEarly", self.left))
        self.wait_for_empty_screen()
        self.assertEqual(len(self.server.shown()), 1)

    def test_a_kill_during_the_question_changes_nothing_and_the_window_asks_on(self):
        self.sleep_through_five_minutes()
        before = self.details(), self.desktop.timer()
        self.desktop.stop(self.process, signal.SIGKILL)
        _, window = self.start_and_wait()
        self.assertEqual((self.details(), self.desktop.timer()), before)
        self.desktop.click(window, *DO_NOT_COUNT_PLACE)
        wait_for("a later end", lambda: self.desktop.timer()["expectedEndAt"] - before[1]["expectedEndAt"] > 299)
        wait_for("the answer", lambda: self.details()[0]["absences"][0]["decision"] == "doNotCount")
        self.assertEqual(len(self.server.shown()), 1, "it is asked by a notification once")

    def test_sleep_across_the_end_gives_one_announcement_also_when_the_waking_is_never_told(self):
        logind = self.start_logind()
        self.server.start()
        self.start(focus=3)
        running = self.desktop.start_phase()
        manager = "org.freedesktop.login1.Manager"
        logind.EmitSignal(manager, "PrepareForSleep", "b", [True])
        record, = self.desktop.wait_for_records(1)
        self.assertLess(now() - running["expectedEndAt"], 1.2)
        self.assertEqual(record["outcomeRawValue"], "completedWhileAway")
        self.assertEqual(record["endedAt"], running["expectedEndAt"])
        self.wait_for_banner()
        logind.EmitSignal(manager, "PrepareForSleep", "b", [False])
        holds_for("one announcement", lambda: self.server.count() == 1, 2)
        self.assertEqual(len(self.server.shown()), 1)

    def check_the_timer(self):
        """The end of a phase is written at once; the file's time tells when."""
        desktop, late = self.desktop, []
        before = len(desktop.history())
        for count in range(before + 1, before + 6):
            record = desktop.wait_for_records(count)[0]
            written = (desktop.data / "sessions-v1.json").stat().st_mtime - REFERENCE_DATE
            late.append(written - record["endedAt"])
        # Files are dated by the kernel's tick, which is up to 4 ms behind, and twice that on a busy machine.
        self.assertTrue(all(each > -0.01 for each in late), late)
        self.assertLess(sorted(late)[len(late) // 2], 0.02, late)

    def start_phases(self):
        self.start(focus=2, short_break=2, auto_start=True)
        self.desktop.press("space")
        self.desktop.wait_for_state("running", 1)

    def test_neither_no_server_nor_one_that_never_answers_delays_the_timer(self):
        self.start_phases()
        self.check_the_timer()
        # Nobody ever looks at what arrives there.
        mute = self.desktop.bus()
        mute.request_name("org.freedesktop.Notifications")
        self.check_the_timer()

    def test_a_hung_server_does_not_delay_the_timer_and_shows_the_last_end_later(self):
        self.server.start()
        self.start_phases()
        self.server.process.send_signal(signal.SIGSTOP)
        self.check_the_timer()
        wait_for("a message", lambda: self.desktop.windows("Failed to schedule notification"))
        self.server.process.send_signal(signal.SIGCONT)
        wait_for("the last announcement", lambda: self.server.count() == 1)
        holds_for("nothing beside it", lambda: self.server.count() == 1, 1)


if __name__ == "__main__":
    main()
