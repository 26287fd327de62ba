"""The figures of one history, computed a second time with Python's own time zones, for random periods of many zones."""

import collections
import datetime
import json
import subprocess
import sys
import zoneinfo

import proof

sys.path.insert(0, str(proof.ROOT / "tools"))

from make_history import EPOCH, make_history  # noqa: E402

FIGURES = proof.BUILT / "proofs" / "brevlin_statistics_figures"
ZONES = ("UTC", "Europe/Berlin", "Europe/London", "America/New_York", "America/St_Johns", "America/Santiago",
         "Asia/Shanghai", "Asia/Kathmandu", "Asia/Beirut", "Australia/Lord_Howe", "Pacific/Apia", "Africa/Casablanca")
COMPLETED = ("completed", "completedWhileAway")
PERIODS = 200  # of a round
DAY = datetime.timedelta(days=1)


def start_of(date, zone):
    """The first instant that shows the date, in Unix seconds. Every zone above has it at an hour's quarter or half."""
    midnight = int(datetime.datetime.combine(date, datetime.time(), datetime.timezone.utc).timestamp())
    return next(at for at in range(midnight - 15 * 3600, midnight + 15 * 3600, 900)
                if datetime.datetime.fromtimestamp(at, zone).date() >= date)


def period(granularity, date):
    """Its first date and the one after its last."""
    if granularity == "day":
        return date, date + DAY
    if granularity == "week":
        first = date - date.weekday() * DAY
        return first, first + 7 * DAY
    if granularity == "month":
        first = date.replace(day=1)
        return first, (first + 31 * DAY).replace(day=1)
    return date.replace(month=1, day=1), date.replace(year=date.year + 1, month=1, day=1)


def minutes(lengths):
    return int(sum(max(length, 0.0) for length in lengths) / 60)


def figures(records, zone, granularity, anchor):
    date = datetime.datetime.fromtimestamp(anchor + EPOCH, zone).date()
    first, after = period(granularity, date)
    start, end = start_of(first, zone) - EPOCH, start_of(after, zone) - EPOCH
    focus = [(at, length, outcome in COMPLETED) for at, length, phase, outcome in records if phase == "focus"]
    attempted = [record for record in focus if start <= record[0] < end]
    buckets = collections.defaultdict(list)
    days = collections.defaultdict(list)
    for at, length, is_completed in focus:
        if not is_completed:
            continue
        local = datetime.datetime.fromtimestamp(at + EPOCH, zone)
        days[local.date()].append(length)
        if start <= at < end:
            buckets[local.hour if granularity == "day" else (local.date() - first).days].append(length)
    done = [length for _, length, is_completed in attempted if is_completed]
    streak, day = 0, date if date in days else date - DAY
    while day in days:
        streak, day = streak + 1, day - DAY
    count = 24 if granularity == "day" else (after - first).days
    return {"start": start, "end": end, "minutes": minutes(done), "completed": len(done), "attempted": len(attempted),
            "active": len(buckets), "rate": round(len(done) / len(attempted), 9) if attempted else 0, "streak": streak,
            "today": minutes(days.get(date, ())), "buckets": [[minutes(buckets[i]), len(buckets[i])] for i in range(count)]}


def random_history(chance):
    until = datetime.datetime(2027, 1, 15, tzinfo=datetime.timezone.utc).timestamp()
    made = make_history(6000, 900, until, 3, "UTC")["sessions"]
    records = [(entry["endedAt"], entry["effectiveDuration"], entry["phaseRawValue"], entry["outcomeRawValue"])
               for entry in made]
    # Around the clock, so that every midnight and every change of the clocks has records on either side.
    for at in range(int(made[-1]["endedAt"]), int(made[0]["endedAt"]), 7 * 3571):
        records.append((float(at), chance.choice((1499.0, -5.0, 59.9, 1500.0)), chance.choice(("focus", "nap")),
                        chance.choice(("completed", "skipped", "unknown"))))
    return sorted(records, key=lambda record: -record[0])


def random_periods(budget):
    """At least one round."""
    row = proof.Row("figures of random periods, computed a second time", "periods")
    records = random_history(budget.chance)
    while budget.lasts() or not row.count:
        questions = [(budget.chance.choice(ZONES), budget.chance.choice(("day", "week", "month", "year")),
                      budget.chance.randrange(int(records[-1][0]), int(records[0][0]))) for _ in range(PERIODS)]
        lines = [str(len(records)), *(" ".join(map(str, record)) for record in records),
                 *(" ".join(map(str, question)) for question in questions)]
        done = subprocess.run([FIGURES], input="\n".join(lines), text=True, stdout=subprocess.PIPE, check=False)
        answers = done.stdout.splitlines()
        if done.returncode or len(answers) != PERIODS:
            row.add({"crashed": f"exit {done.returncode}, {len(answers)} answers"}, f"seed {budget.seed}")
            break
        for (zone, granularity, anchor), answer in zip(questions, answers):
            expected, found = figures(records, zoneinfo.ZoneInfo(zone), granularity, anchor), json.loads(answer)
            row.add({"wrong": f"{found}, expected {expected}"} if found != expected else {},
                    f"{zone} {granularity} {anchor} of seed {budget.seed}")
    return [row]
