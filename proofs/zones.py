"""Every time zone of the system, read a second time with Python's zoneinfo, and what TZ may hold besides a name."""

import datetime
import os
import pathlib
import subprocess
import tempfile
import zoneinfo

import proof

OFFSETS = proof.BUILT / "proofs" / "brevlin_time_zone_offsets"
FIRST, LAST = 2005, 2037
JULY, JANUARY = 1783000000, 1767300000  # of 2026


def seconds(year, month=1, day=1):
    return int(datetime.datetime(year, month, day, tzinfo=datetime.timezone.utc).timestamp())


def offset(zone, at):
    return int(datetime.datetime.fromtimestamp(at, zone).utcoffset().total_seconds())


def changes(zone):
    """Both sides of every change: found by halving each stretch of a week whose ends differ."""
    found, week = [], 7 * 86400
    for begin in range(seconds(FIRST), seconds(LAST + 1), week):
        low, high = begin, begin + week
        found.append(low)
        if offset(zone, low) != offset(zone, high):
            while high - low > 1:
                middle = (low + high) // 2
                low, high = (middle, high) if offset(zone, middle) == offset(zone, low) else (low, middle)
            found += [low, high]
    return found


def ask(lines, **environment):
    text = "".join(f"{name} {' '.join(map(str, instants))}\n" for name, instants in lines)
    done = subprocess.run([OFFSETS], input=text, capture_output=True, text=True, check=True, env={**os.environ, **environment})
    return {line.split()[0]: [int(word) for word in line.split()[1:]] for line in done.stdout.splitlines()}


def all_zones():
    row = proof.Row("time zones, 2005 to 2037, against zoneinfo", "instants")
    asked = [(name, changes(zoneinfo.ZoneInfo(name)))
             for name in sorted(zoneinfo.available_timezones() - {"localtime", "Factory"})]
    told = ask(asked)
    for name, instants in asked:
        zone = zoneinfo.ZoneInfo(name)
        wrong = [at for at, got in zip(instants, told[name]) if got != offset(zone, at)]
        if wrong or len(told[name]) != len(instants):
            row.add({"wrong": f"{len(wrong)} of {len(instants)} differ, the first at {wrong[:1]}"}, name)
        row.count += len(instants)

    with tempfile.TemporaryDirectory() as folder:
        copy = pathlib.Path(folder) / "zone"
        copy.write_bytes(pathlib.Path("/usr/share/zoneinfo/America/Santiago").read_bytes())
        for tz, expected in {"Europe/Berlin": [3600, 7200], ":Europe/Berlin": [3600, 7200],
                             "/usr/share/zoneinfo/Asia/Kathmandu": [20700, 20700], "JST-9": [32400, 32400],
                             "CET-1CEST,M3.5.0,M10.5.0/3": [3600, 7200], "<+0330>-3:30": [12600, 12600],
                             str(copy): [-10800, -14400], "UTC": [0, 0]}.items():
            got = ask([("system", [JANUARY, JULY])], TZ=tz)["system"]
            row.add({"wrong": f"{got}, expected {expected}"} if got != expected else {}, f"TZ={tz}")
    none = ask([("Not/A_Zone", [JULY])])["Not/A_Zone"]
    row.add({"wrong": "a zone that is none has offsets"} if none else {}, "Not/A_Zone")
    return [row]
