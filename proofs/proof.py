"""What every proof shares: a row of the table, the share of the time, and a word to whoever waits."""

import dataclasses
import os
import pathlib
import random
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILT = pathlib.Path(os.environ.get("BREVLIN_BUILT", ROOT / "build" / "release"))
FAULTS_TOLD = 5  # of one proof; the rest is counted


@dataclasses.dataclass
class Row:
    """One line of the table. A count that is not 0 is a fault of the program."""

    what: str
    unit: str  # of the count
    count: int = 0
    lost: int = 0
    torn: int = 0
    crashed: int = 0
    wrong: int = 0
    skipped: str = ""  # the reason, instead of all counts
    missed: int = 0  # cases that did not come about, and prove nothing

    def with_few_missed(self):
        """Itself, red where much of it did not come about."""
        if self.missed * 10 > self.count:
            self.add({"wrong": f"{self.missed} cases did not come about, beside {self.count}"}, "the proof is none")
        return self

    def is_clean(self):
        return not (self.lost or self.torn or self.crashed or self.wrong)

    def add(self, verdict, reproduce):
        """Counts one case. The verdict maps lost, torn, crashed and wrong to what was seen."""
        self.count += 1
        for kind, seen in verdict.items():
            if self.lost + self.torn + self.crashed + self.wrong < FAULTS_TOLD:
                say(f"{self.what}: {kind}: {seen}\n    {reproduce}")
            setattr(self, kind, getattr(self, kind) + 1)


class Budget:
    """How long an open-ended proof goes on, and the seed of its chance. The same seed asks the same again."""

    def __init__(self, seconds, seed=None):
        self.seconds = seconds
        self.seed = random.randrange(2**32) if seed is None else seed
        self.chance = random.Random(self.seed)
        self.started = time.monotonic()

    def start(self):
        self.started = time.monotonic()
        return self

    def left(self):
        return self.started + self.seconds - time.monotonic()

    def lasts(self):
        return self.left() > 0


def say(text):
    print(text, file=sys.stderr, flush=True)


def is_root():
    return os.geteuid() == 0


def mounted(*command):
    """Whether the command of root succeeded; containers often forbid mounting."""
    return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False).returncode == 0
