#!/usr/bin/env python3
"""Writes a history as a person might have made it, in the program's own format.

Usage: tools/make_history.py [--records N] [--days D] [--until UNIX_SECONDS] [--seed S] [--zone IANA] [FILE]
Equal arguments give equal bytes. Without FILE it goes to the standard output.

A working day begins between 8 and 10, has runs of focus phases with short breaks and a long one after every fourth,
and a pause at noon. One day in seven is without work, weekends are light, and some phases are cut short.
"""
import argparse
import datetime
import json
import random
import sys
import time
import uuid
import zoneinfo

EPOCH = 978307200  # 2001-01-01 in Unix time
FOCUS, SHORT_BREAK, LONG_BREAK = 1500, 300, 900
UNFINISHED = ("endedEarly", "skipped", "reset", "switchedEarly")


def record(source, phase, end, place, zone):
    """One phase that ended at this instant."""
    planned = {"focus": FOCUS, "shortBreak": SHORT_BREAK, "longBreak": LONG_BREAK}[phase]
    outcome, effective, interruptions = "completed", float(planned), 0
    chance = source.random()
    if chance < 0.12:
        outcome, effective = source.choice(UNFINISHED), float(source.randrange(20, planned))
    elif chance < 0.16:
        outcome = "completedWhileAway"
    if source.random() < 0.15:
        interruptions = source.randrange(1, 4)
    pause = interruptions * 47.0
    start = end - effective - pause
    return {
        "actualStartAt": start, "completedWhileAway": outcome == "completedWhileAway", "cycleIndex": place % 4 + 1,
        "effectiveDuration": effective, "endedAt": end, "id": str(uuid.UUID(int=source.getrandbits(128), version=4)).upper(),
        "intention": "", "interruptionCount": interruptions, "outcomeRawValue": outcome, "pauseDuration": pause,
        "phaseRawValue": phase, "plannedDuration": float(planned), "plannedStartAt": start,
        "scheduledEndAt": start + planned + pause, "timeZoneIdentifierAtStart": zone}


def day_of_work(source, date, count, zone):
    """The phases of one local day, earliest first; closer together where they are too many for a day."""
    tz = zoneinfo.ZoneInfo(zone)
    begin = datetime.datetime.combine(date, datetime.time(8), tz).timestamp() - EPOCH
    last = datetime.datetime.combine(date, datetime.time(23, 59), tz).timestamp() - EPOCH
    at = begin + source.randrange(0, 7200)
    phases, focus = [], 0
    for index in range(count):
        if index % 2 == 0:
            phase, focus = "focus", focus + 1
        else:
            phase = "longBreak" if focus % 4 == 0 else "shortBreak"
        phases.append(phase)
    needed = sum(FOCUS if phase == "focus" else LONG_BREAK for phase in phases) * 1.2 + 3600
    pace = min(1.0, (last - at) / needed)
    records = []
    for index, phase in enumerate(phases):
        at += pace * (FOCUS if phase == "focus" else LONG_BREAK if phase == "longBreak" else SHORT_BREAK)
        at += pace * source.randrange(0, 240)
        if index == len(phases) // 2:
            at += pace * 3600
        records.append(record(source, phase, round(at, 3), (index // 2), zone))
    return records


def make_history(records, days, until, seed, zone):
    """The document of so many records over the days that end with the one of `until`, a Unix time."""
    source = random.Random(seed)
    today = datetime.datetime.fromtimestamp(until, zoneinfo.ZoneInfo(zone)).date()
    dates = [today - datetime.timedelta(days=age) for age in range(days)]
    weights = []
    for date in dates:
        weight = source.uniform(0.4, 1.6) * (0.3 if date.weekday() >= 5 else 1.0)
        weights.append(0.0 if days > 1 and source.random() < 1 / 7 else weight)
    if not any(weights):
        weights = [1.0] * days
    counts = dict.fromkeys(dates, 0)
    for date in source.choices(dates, weights, k=records):
        counts[date] += 1
    made = [entry for date in dates for entry in day_of_work(source, date, counts[date], zone)]
    past = [entry for entry in made if entry["endedAt"] <= until - EPOCH]
    # What would lie in the future happened earlier today, a minute apart.
    for place, entry in enumerate(entry for entry in made if entry["endedAt"] > until - EPOCH):
        shift = entry["endedAt"] - (until - EPOCH - 60 * (place + 1))
        for key in ("actualStartAt", "endedAt", "plannedStartAt", "scheduledEndAt"):
            entry[key] -= shift
        past.append(entry)
    past.sort(key=lambda entry: -entry["endedAt"])
    return {"sessions": past, "version": 1}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--records", type=int, default=2000)
    parser.add_argument("--days", type=int, default=400)
    parser.add_argument("--until", type=float, default=time.time())
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--zone", default="UTC")
    parser.add_argument("file", nargs="?")
    arguments = parser.parse_args()
    document = make_history(arguments.records, arguments.days, arguments.until, arguments.seed, arguments.zone)
    text = json.dumps(document, separators=(",", ":"))
    if arguments.file:
        with open(arguments.file, "w", encoding="utf-8") as file:
            file.write(text)
    else:
        sys.stdout.write(text)


if __name__ == "__main__":
    main()
