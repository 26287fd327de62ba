"""Runs the test programs of a copy, without a mutant and with each."""

import collections
import concurrent.futures
import dataclasses
import json
import os
import pathlib
import signal
import subprocess
import tempfile
import time

SLOW = 0.2  # seconds; such a test runs alone, after the others
FILTER = "--gtest_filter="
# A mutant may loop, and ask for memory or write a file meanwhile.
LIMITS = ("prlimit", f"--as={4 << 30}", f"--fsize={64 << 20}", "--cpu=600", "--core=0")


@dataclasses.dataclass
class Test:
    name: str
    command: list
    own: bool  # of the layer itself, not of the app above it
    seconds: float = 0.0
    reached: frozenset = frozenset()


@dataclasses.dataclass
class Verdict:
    state: str  # "killed", "out of time", "survived" or "never reached"
    by: str = ""


def run(command, limit, **environment):
    """The exit status, None where the time was up. The program has a home of its own, which goes with it."""
    with tempfile.TemporaryDirectory(prefix="brevlin-mutant-") as home:
        variables = {key: value for key, value in os.environ.items()
                     if not key.startswith(("XDG_", "BREVLIN_")) and key not in ("DISPLAY", "WAYLAND_DISPLAY")}
        folders = {"HOME": home, "TMPDIR": home, "DBUS_SESSION_BUS_ADDRESS": f"unix:path={home}/none"}
        with open(os.path.join(home, "output"), "wb") as output:
            process = subprocess.Popen([*LIMITS, *command], cwd=home, stdin=subprocess.DEVNULL, stdout=output, stderr=output,
                                       start_new_session=True, env={**variables, **folders, **environment})
            try:
                return process.wait(limit)
            except subprocess.TimeoutExpired:
                return None
            finally:
                try:
                    os.killpg(process.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                process.wait()


class Tests:
    """The tests of some folders below tests/, which of them pass, how long they take and which mutants they reach."""

    def __init__(self, build_folder, folders):
        listing = subprocess.run(["ctest", "--show-only=json-v1"], cwd=build_folder, check=True, capture_output=True).stdout
        self.tests, self.red = [], []
        places = {str(build_folder / "tests" / folder): at for at, folder in enumerate(folders)}
        for test in json.loads(listing)["tests"]:
            place = next((at for folder, at in places.items()
                          if any(word.startswith(folder + "/") for word in test.get("command", ()))), None)
            labels = next((entry["value"] for entry in test.get("properties", ()) if entry["name"] == "LABELS"), ())
            if place is not None and "desktop" not in labels:
                self.tests.append(Test(test["name"], test["command"], place == 0))
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            passed = list(pool.map(self.measure, self.tests))
        self.red = [test.name for test, green in zip(self.tests, passed) if not green]
        self.tests = [test for test, green in zip(self.tests, passed) if green]
        self.reached = frozenset().union(*(test.reached for test in self.tests))

    def measure(self, test):
        with tempfile.TemporaryDirectory() as folder:
            record = pathlib.Path(folder, "reached")
            began = time.monotonic()
            status = run(test.command, 300, BREVLIN_REACHED=str(record))
            test.seconds = time.monotonic() - began
            test.reached = frozenset(map(int, record.read_text().split())) if record.exists() else frozenset()
        return status == 0

    def verdict(self, number):
        """What the tests that reach a mutant say of it, the quick ones first."""
        if number not in self.reached:
            return Verdict("never reached")
        reaching = [test for test in self.tests if number in test.reached]
        for command, seconds, names in batches(reaching):
            status = run(command, 5 * seconds + 3, BREVLIN_MUTANT=str(number))
            if status != 0:
                return Verdict("out of time" if status is None else "killed", names)
        return Verdict("survived", f"{len(reaching)} tests")

    def verdicts(self, numbers, told):
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            results = {}
            for number, verdict in zip(numbers, pool.map(self.verdict, numbers)):
                results[number] = verdict
                told(len(results), len(numbers))
            return results


def batches(tests):
    """(command, seconds without a mutant, names): one for the quick tests of a program, one for each slow test."""
    quick = collections.defaultdict(list)
    for test in tests:
        if test.seconds < SLOW and any(word.startswith(FILTER) for word in test.command):
            quick[test.own, test.command[0]].append(test)
    together = [(own, sum(test.seconds for test in group), group) for (own, _), group in quick.items()]
    alone = [(test.own, test.seconds, [test]) for test in tests if not any(test in group for _, _, group in together)]
    result = []
    for _, seconds, group in sorted(together, key=lambda each: not each[0]) + sorted(alone, key=lambda each: each[1]):
        command = group[0].command
        if any(word.startswith(FILTER) for word in command):
            names = ":".join(word.removeprefix(FILTER) for test in group for word in test.command if word.startswith(FILTER))
            command = [command[0], FILTER + names, "--gtest_fail_fast"]
        result.append((command, seconds, ", ".join(test.name for test in group)))
    return result
