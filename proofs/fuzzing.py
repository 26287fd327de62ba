"""The fuzz targets of all decoders, with the address and undefined-behaviour sanitizers."""

import re
import subprocess
import tempfile

import proof

FUZZ = proof.ROOT / "build" / "fuzz" / "fuzz"
DICTIONARY = proof.ROOT / "fuzz" / "documents.dict"
SEEDS = proof.ROOT / "fuzz" / "seeds"
FINDINGS = proof.ROOT / "build" / "proofs"
LONGEST = 1000  # bytes; a document of every kind fits
TARGETS = {  # what it is fed with, and the seeds, if any
    "documents": ("texts decoded, written and read again", "json"),
    "stores": ("texts found by the stores and the engine", "json"),
    "import": ("files to import, taken in, out and in again", "imports"),
    "values": ("values written and read again", None),
    "desktop_texts": ("entries for login and X settings", "texts"),
}


def fuzz_targets(budget):
    return [fuzz(name, *told, budget.seconds / len(TARGETS), budget.seed) for name, told in TARGETS.items()]


def fuzz(name, what, seeds, seconds, seed):
    row = proof.Row(f"fuzzed: {what}", "inputs")
    FINDINGS.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory(prefix="brevlin-proof-") as corpus:
        command = [FUZZ / f"brevlin_{name}_fuzz", f"-max_total_time={max(1, int(seconds))}", f"-dict={DICTIONARY}",
                   f"-max_len={LONGEST}", f"-seed={seed}", "-timeout=10", "-rss_limit_mb=2048", "-print_final_stats=1",
                   f"-artifact_prefix={FINDINGS}/{name}-", corpus] + ([SEEDS / seeds] if seeds else [])
        done = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=False)
    told = done.stderr.decode(errors="replace")
    if done.returncode:
        written = re.findall(r"Test unit written to (\S+)", told)
        reason = next((line for line in told.splitlines() if "ERROR" in line or "runtime error" in line), told[-300:])
        # An abort is one of the target's own requirements, which a value did not meet.
        kind = "wrong" if "deadly signal" in reason else "crashed"
        row.add({kind: reason}, f"{command[0]} {' '.join(written)}")
    row.count = int((re.findall(r"number_of_executed_units: (\d+)", told) or ["0"])[0])
    return row
