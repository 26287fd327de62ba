"""The commands that take the history out and in: with no display and no bus, and through the running program."""

import csv
import datetime
import fcntl
import io
import json
import os
import pathlib
import subprocess
import sys
import unittest

import icalendar

from harness import PROGRAM, REFERENCE_DATE, Desktop, DesktopTest, main, wait_for

TOOLS = pathlib.Path(__file__).resolve().parents[2] / "tools"
INTENTIONS = ["写第三章，\"初稿\" 🍅 #写作", "=1+1, it's", "'@home\r\nnext; line\\", "", "-" + "长" * 90]
TOGGL = """User,Description,Start date,Start time,End date,End time,Duration
A,"Write, again",2026-01-31,09:00:00,2026-01-31,09:25:00,18:25 min
A,,2026-01-31,10:00:00,,,
"""


class Commands(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop()
        self.addCleanup(self.desktop.close)
        self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.desktop.folder}/no-session-bus"

    def run_program(self, *arguments, **options):
        return run_program(self.desktop, *arguments, **options)

    def make_history(self, records):
        text = subprocess.run([sys.executable, TOOLS / "make_history.py", "--records", str(records), "--zone",
                               "Asia/Shanghai"], check=True, stdout=subprocess.PIPE).stdout
        document = json.loads(text)
        for index, record in enumerate(document["sessions"]):
            record["intention"] = INTENTIONS[index % len(INTENTIONS)]
            record["actualStartAt"] += 0.1
        self.desktop.data.mkdir(parents=True)
        self.history = self.desktop.data / "sessions-v1.json"
        self.history.write_text(json.dumps(document, ensure_ascii=False))
        return list(reversed(document["sessions"]))

    def exported(self, *arguments):
        result = self.run_program("export", *arguments)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        return result.stdout.decode()

    def test_other_programs_read_what_is_exported(self):
        records = self.make_history(300)
        before = {path: path.read_bytes() for path in self.desktop.home.rglob("*") if path.is_file()}

        rows = list(csv.DictReader(io.StringIO(self.exported().removeprefix("\ufeff"), newline="")))
        self.assertEqual([row["id"] for row in rows], [record["id"] for record in records])
        for row, record in zip(rows, records):
            intention = record["intention"]
            self.assertEqual(row["intention"], "'" + intention if intention[:1] in ("=", "-", "'") else intention)
            self.assertEqual(float(row["effective_seconds"]), record["effectiveDuration"])
            start = datetime.datetime.fromisoformat(row["start"][:19] + row["start"][-6:])
            self.assertEqual(start.utcoffset(), datetime.timedelta(hours=8))
            self.assertEqual(start.timestamp(), int(record["actualStartAt"]) + REFERENCE_DATE)
        self.assertTrue(self.exported("--byte-order-mark").startswith("\ufeffid,"))

        objects = json.loads(self.exported("--format=json"))
        self.assertEqual([each["intention"] for each in objects], [record["intention"] for record in records])

        focus = [record for record in records if record["phaseRawValue"] == "focus"]
        calendar = icalendar.Calendar.from_ical(self.exported("--format", "ics"))
        events = list(calendar.walk("VEVENT"))
        self.assertEqual([str(event["UID"]) for event in events], [record["id"] for record in focus])
        for event, record in zip(events, focus):
            self.assertEqual(event["DTSTART"].dt.timestamp(), round(record["actualStartAt"]) + REFERENCE_DATE)
            self.assertEqual(event["DTEND"].dt.timestamp(), round(record["endedAt"]) + REFERENCE_DATE)
            self.assertEqual(event["TRANSP"], "TRANSPARENT")
            self.assertEqual(str(event["SUMMARY"]), record["intention"].replace("\r\n", "\n") or "Focus")

        intervals = json.loads(self.exported("--format", "timewarrior"))
        for former, latter in zip(intervals, intervals[1:]):
            self.assertLessEqual(former["end"], latter["start"])
        self.assertIn({"tags": ["写作"], "annotation": INTENTIONS[0]},
                      [{key: each[key] for key in ("tags", "annotation") if key in each} for each in intervals])

        day = datetime.datetime.fromtimestamp(records[150]["endedAt"] + REFERENCE_DATE, datetime.timezone.utc).date()
        self.desktop.environment["TZ"] = "UTC"
        chosen = self.exported("--from", str(day), "--to", str(day), "--phase", "focus")
        self.assertEqual([row["id"] for row in csv.DictReader(io.StringIO(chosen, newline=""))],
                         [record["id"] for record in focus if datetime.datetime.fromtimestamp(
                             record["endedAt"] + REFERENCE_DATE, datetime.timezone.utc).date() == day])

        file = self.desktop.folder / "new" / "export.csv"
        self.assertEqual(self.exported("--output", str(file)), "")
        self.assertEqual(file.read_bytes().decode(), self.exported())
        after = {path: path.read_bytes() for path in self.desktop.home.rglob("*") if path.is_file()}
        self.assertEqual(after, before, "an export changes nothing")

    def test_the_library_of_calendars_is_opened_for_a_calendar_alone_and_missed_in_words(self):
        log = self.desktop.folder / "opened"
        for form, opens in (("csv", False), ("json", False), ("timewarrior", False), ("ics", True)):
            self.run_program("export", "--format", form, before=["strace", "-f", "-o", str(log), "-e", "openat"])
            self.assertEqual("libical" in log.read_text(), opens, form)
        (self.desktop.folder / "libical.so.3").write_bytes(b"")
        self.desktop.environment["LD_LIBRARY_PATH"] = str(self.desktop.folder)
        result = self.run_program("export", "--format", "ics")
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertIn(b"libical3", result.stderr)

    def test_the_status_tells_how_it_went_and_words_go_to_standard_error(self):
        self.make_history(2000)
        full = open("/dev/full", "wb")
        self.addCleanup(full.close)
        for arguments, status, word in ((["export", "--format", "xml"], 2, "not a valid value: --format xml"),
                                        (["export", "--from", "2026-02-30"], 2, "2026-02-30"),
                                        (["export", "--from=2026-02-02", "--to=2026-02-01"], 2, "ends before"),
                                        (["export", "more"], 2, "unknown argument"), (["import"], 2, "FILE"),
                                        (["import", "/no/file"], 1, "/no/file"),
                                        (["import", str(self.history)], 1, "none of the formats"),
                                        (["export", "--output", str(self.desktop.folder)], 1, "directory")):
            with self.subTest(arguments):
                result = self.run_program(*arguments)
                self.assertEqual((result.returncode, result.stdout), (status, b""))
                self.assertIn(word, result.stderr.decode())
        self.assertEqual(self.run_program("export", stdout=full).returncode, 1)
        self.assertIn(b"Exit status", self.run_program("export", "--help").stdout)

        reading, writing = os.pipe()
        os.close(reading)
        result = self.run_program("export", stdout=writing)
        os.close(writing)
        self.assertEqual((result.returncode, result.stderr), (0, b""), "nobody reads any longer")

        self.desktop.environment["LC_MESSAGES"] = "zh_CN.UTF-8"
        self.history.write_text("{")
        for arguments in (["export"], ["import", str(self.history)]):
            result = self.run_program(*arguments)
            self.assertEqual((result.returncode, result.stdout), (1, b""))
            self.assertIn("无法读取历史记录", result.stderr.decode())
        self.assertEqual(self.history.read_text(), "{")

    def test_an_import_adds_once_what_is_new(self):
        self.make_history(40)
        ours = self.desktop.folder / "ours.json"
        objects = json.loads(self.exported("--format", "json"))
        objects[7]["pauses"] = [{"start": objects[7]["start"], "end": objects[7]["end"]}]
        ours.write_text(json.dumps(objects))
        before = json.loads(self.history.read_text())
        self.history.unlink()
        toggl = self.desktop.folder / "toggl.csv"
        toggl.write_text(TOGGL)
        for file, arguments, zone, expected in (
                (ours, ["--dry-run"], "UTC", "Would be added: 40. Known already: 0. Unreadable: 0.\n"),
                (ours, [], "UTC", "Added: 40. Known already: 0. Unreadable: 0.\n"),
                (toggl, [], "UTC", "Added: 1. Known already: 0. Unreadable: 1.\n"),
                (toggl, [], "Asia/Tokyo", "Added: 0. Known already: 1. Unreadable: 1.\n"),
                (ours, ["--format", "json"], "Asia/Tokyo", "Added: 0. Known already: 40. Unreadable: 0.\n")):
            with self.subTest(expected):
                self.desktop.environment["TZ"] = zone
                result = self.run_program("import", *arguments, str(file))
                self.assertEqual((result.returncode, result.stdout.decode()), (0, expected))
                self.assertEqual(result.stderr.decode(), "Line 3: has not ended yet\n" if file == toggl else "")
                self.assertEqual(self.history.exists(), "--dry-run" not in arguments)
        after = json.loads(self.history.read_text())
        self.assertEqual([each for each in json.loads(self.exported("--format", "json"))
                          if each["intention"] != "Write, again"], objects)
        added = [each for each in after["sessions"] if each["intention"] == "Write, again"]
        self.assertEqual(len(added), 1)
        self.assertEqual([each for each in after["sessions"] if each not in added], before["sessions"])

    def test_an_import_waits_for_whoever_holds_the_folders_and_then_gives_up(self):
        self.make_history(3)
        before = self.history.read_bytes()
        toggl = self.desktop.folder / "toggl.csv"
        toggl.write_text(TOGGL)
        descriptor = os.open(self.desktop.data, os.O_RDONLY)
        self.addCleanup(os.close, descriptor)
        fcntl.flock(descriptor, fcntl.LOCK_EX)
        result = self.run_program("import", str(toggl))
        self.assertEqual((result.returncode, self.history.read_bytes()), (1, before))
        self.assertIn(b"does not answer", result.stderr)


class CommandsOfTheRunningProgram(DesktopTest):
    def test_the_running_program_imports_for_the_command_in_one_step(self):
        desktop = self.desktop
        toggl = desktop.folder / "tog\tgl.csv"
        toggl.write_text(TOGGL + "".join(f"A,{n},2026-02-01,09:{n}:00,2026-02-01,09:{n}:30,\n" for n in range(10, 30)))
        process, window = self.start_and_wait()
        for arguments, word, known in ((["--dry-run"], "Would be added", 0), ([], "Added", 0), ([], "Added", 21)):
            result = run_program(desktop, "import", *arguments, toggl.name, cwd=desktop.folder)
            self.assertEqual((result.returncode, result.stdout.decode()),
                             (0, f"{word}: {21 - known}. Known already: {known}. Unreadable: 1.\n"))
            self.assertEqual(result.stderr.decode(), "Line 3: has not ended yet\n")
            if not arguments:
                self.assertEqual(len(desktop.history()), 21, "it is on the disk when the command ends")
        result = run_program(desktop, "import", "--format", "json", toggl.name, cwd=desktop.folder)
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertIn(b"none of the formats", result.stderr)
        # The clock has not stopped, and what the program has, the next command finds.
        desktop.start_phase()
        self.assertIsNone(process.poll())

    def test_what_the_disk_refuses_is_not_said_to_be_imported(self):
        desktop = self.desktop
        toggl = desktop.folder / "toggl.csv"
        toggl.write_text(TOGGL)
        desktop.start_program("strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=rename,renameat,renameat2",
                              "-e", "inject=rename,renameat,renameat2:error=ENOSPC")
        wait_for("a window", desktop.windows)
        result = run_program(desktop, "import", str(toggl))
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertIn(b"nothing was imported", result.stderr)
        self.assertFalse((desktop.data / "sessions-v1.json").exists())


def run_program(desktop, *arguments, before=(), stdout=subprocess.PIPE, cwd=None):
    """A command that has ended."""
    return subprocess.run([*before, PROGRAM, *arguments], env=desktop.environment, stdin=subprocess.DEVNULL, stdout=stdout,
                          stderr=subprocess.PIPE, timeout=60, cwd=cwd, check=False)


if __name__ == "__main__":
    main()
