"""Runs the proofs and prints their table. Built and started by proofs/run."""

import argparse
import sys
import threading
import traceback

import bus
import engine
import faults
import figures
import fuzzing
import kills
import power_cuts
import program_kills
import proof
import year
import zones

# Two lanes run beside each other: what waits for the disk, and what wants the processor. The first of each are
# exhaustive and run whole; the others share the minutes.
DISK = [
    ("calls", kills.kills_at_calls),
    ("faults", faults.failing_calls),
    ("full_disk", faults.full_disk),
    ("kills", kills.random_kills),
    ("power_cuts", power_cuts.power_cuts),
    ("program_kills", program_kills.program_kills),
]
PROCESSOR = [
    ("zones", zones.all_zones),
    ("year", year.year_of_use),
    ("bus_table", bus.wrong_bodies),
    ("engine", engine.second_reading),
    ("figures", figures.random_periods),
    ("fuzzing", fuzzing.fuzz_targets),
    ("bus", bus.random_bodies),
]
EXHAUSTIVE = {"calls", "faults", "full_disk", "zones", "bus_table", "year"}
SHORT = 7  # minutes, unless the first argument says otherwise


def lane(proofs, minutes, seed, rows):
    open_ended = [name for name, _ in proofs if name not in EXHAUSTIVE]
    for name, prove in proofs:
        proof.say(f"{name} …")
        try:
            if name in EXHAUSTIVE:
                found = prove()
            else:
                found = prove(proof.Budget(60 * minutes / len(open_ended), seed))
        except Exception:  # a proof that breaks off is a red one, and the others go on
            row = proof.Row(name, "")
            row.add({"wrong": "the proof itself broke off:\n" + traceback.format_exc()}, f"proofs/run --only {name}")
            found = [row]
        for row in found:
            proof.say(f"{name}: {row.count} {row.unit}, " + (row.skipped or ("clean" if row.is_clean() else "RED")))
        rows.extend(found)


def print_table(rows):
    form = "| {:<50} | {:>20} | {:>5} | {:>5} | {:>7} | {:>5} |"
    print(form.format("what", "how many", "lost", "torn", "crashed", "wrong"))
    print(form.format("-" * 50, "-" * 20, *["-" * width for width in (5, 5, 7, 5)]))
    for row in rows:
        if row.skipped and not row.count:
            print(form.format(row.what, "skipped", "", "", "", ""), row.skipped)
        else:
            print(form.format(row.what, f"{row.count:,} {row.unit}", row.lost, row.torn, row.crashed, row.wrong),
                  row.skipped)


def main():
    parser = argparse.ArgumentParser(prog="proofs/run", description=__doc__)
    parser.add_argument("minutes", nargs="?", type=float, default=SHORT,
                        help="for the open-ended proofs of a lane together; the exhaustive ones come on top")
    parser.add_argument("--only", action="append", help="this proof alone (may be given more than once)")
    parser.add_argument("--seed", type=int, help="of an earlier run, to see the same again")
    arguments = parser.parse_args()
    lanes = [[(name, prove) for name, prove in all_of_it if not arguments.only or name in arguments.only]
             for all_of_it in (DISK, PROCESSOR)]
    if not any(lanes):
        parser.error("--only names none of " + ", ".join(name for name, _ in DISK + PROCESSOR))
    results = [[], []]
    threads = [threading.Thread(target=lane, args=(proofs, arguments.minutes, arguments.seed, rows))
               for proofs, rows in zip(lanes, results)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    rows = results[0] + results[1]
    print_table(rows)
    sys.exit(0 if all(row.is_clean() for row in rows) else 1)


if __name__ == "__main__":
    main()
