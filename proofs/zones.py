"""Every time zone of the system against Python's zoneinfo: the test of the suite, counted."""

import re
import subprocess
import sys

import proof

TEST = proof.ROOT / "tests" / "platform" / "time_zones_test.py"
OFFSETS = proof.BUILT / "tests" / "platform" / "brevlin_time_zone_offsets"


def all_zones():
    row = proof.Row("time zones, 2005 to 2037, against zoneinfo", "instants")
    done = subprocess.run([sys.executable, "-B", TEST, OFFSETS], stdout=subprocess.PIPE, text=True, check=False)
    first, *faults = [line for line in done.stdout.splitlines() if line] or ["it printed nothing"]
    for fault in faults or [first] * (done.returncode != 0):
        row.add({"wrong": fault}, f"{TEST} {OFFSETS}")
    row.count = int((re.findall(r"(\d+) instants", first) or ["0"])[0])
    return [row]
