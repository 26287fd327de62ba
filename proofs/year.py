"""A year of use in virtual time, with the storage on the real disk: whether every record is there, and how much memory
has gone."""

import json
import pathlib
import subprocess
import tempfile

import proof

USE = proof.BUILT / "proofs" / "brevlin_year_of_use"
DAYS = 365
# The history remembers the identifier of every record that it ever held, 16 bytes in a vector that doubles, so that a
# removed one is not taken for somebody else's. Nothing else may grow with use.
BYTES_OF_A_PHASE = 32
BYTES = 64 << 10
RESIDENT_KILOBYTES = 2 << 10
# What holds the history has room to grow: never as much as it holds, and a fresh start holds it without.
ROOM = 1.5


def year_of_use():
    row = proof.Row("a year of use, every record kept", "phases")
    memory = proof.Row("a year of use, no memory lost", "phases")
    for kind, row_of_it in (("keep", row), ("clear", memory)):
        with tempfile.TemporaryDirectory(prefix="brevlin-proof-", dir=proof.ROOT / "build") as folder:
            command = [USE, folder, str(DAYS), kind]
            done = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=False)
            verdict, count = judge(done, pathlib.Path(folder) / "data" / "sessions-v1.json", kind)
        row_of_it.add(verdict, f"{USE} FOLDER {DAYS} {kind}")
        row_of_it.count = count
    return [row, memory]


def judge(done, history, kind):
    if done.returncode:
        return {"crashed": f"exit {done.returncode}"}, 0
    told = json.loads(done.stdout)
    kept = told["ended"] if kind == "keep" else 0
    stored = json.loads(history.read_bytes())["sessions"] if history.exists() else []
    counts = {told["known"], told["reread"], len(stored), len({record["id"] for record in stored})}
    if counts != {kept} or not told["saved"]:
        return {"lost": f"{kept} records are expected: {told}, {len(stored)} in the file"}, told["ended"]
    growth = told["after"] - told["before"]
    resident = told["residentAfter"] - told["residentBefore"]
    proof.say(f"memory over the year ({kind}): heap {told['before']:,} to {told['after']:,} bytes, a fresh start with the "
              f"same documents {told['fresh']:,}; resident {told['residentBefore']:,} to {told['residentAfter']:,} kB")
    if kind == "keep" and told["after"] > ROOM * told["fresh"]:
        return {"wrong": f"the heap holds more than {ROOM} times what a fresh start needs: {told}"}, told["ended"]
    if kind == "clear" and (growth > BYTES + BYTES_OF_A_PHASE * told["ended"] or resident > RESIDENT_KILOBYTES):
        return {"wrong": f"the heap has grown by {growth} bytes, the process by {resident} kB: {told}"}, told["ended"]
    return {}, told["ended"]
