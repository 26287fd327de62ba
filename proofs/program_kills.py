"""Kills the whole program, on a display of its own, while phases of a second follow each other. Each of its lives makes
the day's backup anew."""

import json
import os
import sys
import time

import proof

os.environ.setdefault("BREVLIN_PROGRAM", str(proof.BUILT / "src" / "brevlin"))
sys.path.insert(0, str(proof.ROOT / "tests" / "desktop"))

from harness import Desktop, now

LONGEST_LIFE = 3.0  # seconds from the start on
START = 0.25
PAUSE = 0.004  # between two looks at the documents


class Watch:
    """What the documents were once seen to hold, and so what they may never forget."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.records = set()
        self.runs = set()  # phases that were seen to run
        self.current = None
        self.backups = desktop.home / ".local/state/Brevlin/backups/default"
        self.copied = 0  # lives that left a backup

    def backed_up(self):
        """The ids in the backup of the day. Raises ValueError where it is not whole."""
        return {record["id"] for path in self.backups.glob("sessions-*.json")
                for record in json.loads(path.read_bytes())["sessions"]}

    def forget_backups(self):
        for path in self.backups.glob("*.json"):
            self.copied += 1
            path.unlink()

    def look(self):
        """The ids in the history. Raises ValueError where a document is not whole."""
        # The timer first: a phase's record stands in the history before the timer moves on.
        timer = self.desktop.timer()
        if timer:
            self.current = timer.get("sessionID")
            self.runs.add(self.current)
        found = [record["id"] for record in self.desktop.history()]
        if len(found) != len(set(found)):
            raise ValueError("a record stands there twice")
        self.records.update(found)
        return set(found)

    def judge(self):
        try:
            copied = self.backed_up()
            found = self.look()
        except (ValueError, KeyError) as error:
            return {"torn": str(error)}
        lost = self.records - found
        if lost:
            return {"lost": f"{len(lost)} of {len(self.records)} records"}
        if not copied <= found:
            return {"wrong": "a backup holds what the history never held"}
        unrecorded = self.runs - found - {self.current, None}
        if unrecorded:
            return {"lost": f"{len(unrecorded)} phases that ran and are in no record"}
        aside = [path.name for folder in (self.desktop.config, self.desktop.data) if folder.exists()
                 for path in folder.iterdir() if ".unreadable-" in path.name]
        return {"wrong": f"set aside: {aside}"} if aside else {}


def program_kills(budget):
    row = proof.Row("kills of the whole program", "kills")
    desktop = Desktop()
    try:
        desktop.start_display()
        desktop.start_bus()
        desktop.set_preferences(focus=1.0, short_break=1.0, long_break=1.0, auto_start=True, language="english")
        desktop.store_timer({"phase": "focus", "runState": "running", "sessionID": "00000000-0000-4000-8000-000000000001",
                             "startedAt": now(), "expectedEndAt": now() + 1, "plannedDuration": 1,
                             "accumulatedPauseSeconds": 0, "interruptionCount": 0, "completedFocusCount": 0})
        watch = Watch(desktop)
        while budget.lasts():
            verdict = kill_once(desktop, watch, budget.chance)
            row.add(verdict, f"turn {row.count + 1} of seed {budget.seed}: "
                             f"proofs/run --only program_kills --seed {budget.seed}")
            if verdict:
                break  # what follows would tell of the same loss again
        if row.is_clean() and row.count > 20 and len(watch.records) < row.count / 5:
            row.add({"wrong": f"only {len(watch.records)} records: hardly a phase ever ended, so nothing was proved"}, "")
        if row.is_clean() and row.count > 20 and watch.copied < row.count / 5:
            row.add({"wrong": f"only {watch.copied} backups"}, "")
    finally:
        desktop.close()
    return [row]


def kill_once(desktop, watch, chance):
    watch.forget_backups()
    process = desktop.start_program()
    death = time.monotonic() + chance.uniform(START, LONGEST_LIFE)
    press = time.monotonic() + chance.uniform(START, LONGEST_LIFE)
    verdict = {}
    while time.monotonic() < death and process.poll() is None and not verdict:
        verdict = watch.judge()  # as if the kill came now
        if time.monotonic() > press:
            desktop.press("space")  # starts, pauses or resumes
            press = time.monotonic() + chance.uniform(0.1, 1.0)
        time.sleep(PAUSE)
    code = process.poll()
    if code is not None:
        return {"crashed": f"exit {code}: {desktop.output_of('brevlin')[-300:]}"}
    process.kill()
    process.wait()
    return verdict or watch.judge()
