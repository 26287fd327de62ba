"""Kills the writer: at random instants, and before every single system call of a save."""

import collections
import pathlib
import re
import shutil
import subprocess
import tempfile
import time

import journal
import proof

LONGEST_LIFE = 0.08  # seconds from the first line on
STEPS = 2


def random_kills(budget):
    row = proof.Row("kills at random instants", "kills")
    with tempfile.TemporaryDirectory(prefix="brevlin-proof-") as name:
        folder = pathlib.Path(name)
        promised = journal.Journal()
        while budget.lasts():
            writer = subprocess.Popen([journal.WRITER, folder, "0", str(promised.last + 1)],
                                      stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
            with writer:
                first = writer.stdout.readline()
                time.sleep(budget.chance.uniform(0, LONGEST_LIFE))
                writer.kill()
                output = first + writer.stdout.read()
            verdict = promised.follow(journal.whole_lines(output)).judge(folder)
            if journal.set_aside(folder):
                verdict["wrong"] = "a document was set aside"
            if writer.returncode in journal.CRASH_SIGNALS:
                verdict["crashed"] = f"signal {-writer.returncode}"
            row.add(verdict, f"turn {row.count + 1} of seed {budget.seed}: proofs/run --only kills --seed {budget.seed}")
            if verdict:
                shutil.rmtree(folder)
                folder.mkdir()
                promised = journal.Journal()
                continue
            promised.adopt(folder)
    return [row]


def make_base(folder, steps=8):
    """A folder with a history, a timer and preferences, and what is certain about it."""
    promised = journal.Journal()
    if steps:
        code, lines, errors = journal.write(folder, steps)
        promised.follow(lines)
        if code or not promised.ended or promised.judge(folder):
            raise AssertionError(f"the writer fails even undisturbed: {code} {errors} {promised.judge(folder)}")
    return promised


CALL = re.compile(r"^(?:\[pid +\d+\] |\d+ +)?(\w+)\(")


def calls_of_a_save(folder, promised):
    """{call: (first, last)}: which occurrences of each system call come after the writer has begun."""
    with tempfile.TemporaryDirectory(prefix="brevlin-proof-") as name:
        copy = pathlib.Path(name) / "copy"
        shutil.copytree(folder, copy)
        log = pathlib.Path(name) / "log"
        code, lines, errors = journal.write(copy, STEPS, promised.last + 1, ["strace", "-f", "-o", log])
        if code or lines[-1:] != ["end"]:
            raise AssertionError(f"strace does not work here: {code} {errors}")
        before, after, has_begun = collections.Counter(), collections.Counter(), False
        for line in log.read_text(errors="replace").splitlines():
            call = CALL.match(line)
            if call:
                (after if has_begun else before)[call.group(1)] += 1
            has_begun = has_begun or '"ready\\n"' in line
        return {call: (before[call] + 1, before[call] + count) for call, count in after.items()}


def kills_at_calls():
    """Every call of a first start and of one with everything there, one kill each."""
    row = proof.Row("a kill at every system call of a save", "kills")
    for steps in (0, 8):
        with tempfile.TemporaryDirectory(prefix="brevlin-proof-") as name:
            base = pathlib.Path(name) / "base"
            base.mkdir()
            promised = make_base(base, steps)
            for call, (first, last) in calls_of_a_save(base, promised).items():
                for occurrence in range(first, last + 1):
                    kill_at(row, base, promised, call, occurrence)
    return [row.with_few_missed()]


def kill_at(row, base, promised, call, occurrence):
    injection = f"inject={call}:signal=SIGKILL:when={occurrence}"
    folder, code, lines, log = run_with(base, promised, injection)
    if "killed by SIGKILL" not in log:
        row.missed += 1  # the number of some calls differs a little from run to run
        return
    following = promised.copy().follow(lines)
    verdict = following.judge(folder)
    if not verdict:
        # The next start finds everything as it was left, and goes on.
        following.adopt(folder)
        code, lines, errors = journal.write(folder, 1, following.last + 1)
        verdict = following.follow(lines).judge(folder)
        if code or not following.ended or not following.is_all_saved() or journal.set_aside(folder):
            verdict["wrong"] = f"the next start does not go on: {code} {errors}"
    row.add(verdict, command(promised, injection))


def run_with(base, promised, injection):
    """A copy of the base that the writer has worked on with this injection, its exit code, its lines and the log."""
    folder, log = base.parent / "copy", base.parent / "log"
    shutil.rmtree(folder, ignore_errors=True)
    shutil.copytree(base, folder)
    call = injection.split("=")[1].split(":")[0]
    # Faster, but under it no signal is injected.
    fast = [] if "signal=" in injection else ["--seccomp-bpf"]
    strace = ["strace", "-f", "-qqq", "-y", *fast, "-o", log, "-e", f"trace={call},renameat", "-e", injection]
    code, lines, errors = journal.write(folder, STEPS, promised.last + 1, strace)
    return folder, code, lines, log.read_text(errors="replace") + errors


def command(promised, injection):
    """How to do by hand what run_with() did."""
    writer = f"{journal.WRITER} FOLDER"
    return f"{writer} {promised.last} 1; " * (promised.last > 0) + (
        f"strace -f -e {injection} {writer} {STEPS} {promised.last + 1}")
