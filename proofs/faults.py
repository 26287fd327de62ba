"""Lets every system call of a save fail, once and for ever, and fills a disk to the last page."""

import collections
import os
import pathlib
import re
import subprocess
import tempfile

import journal
import kills
import proof

# What each call may answer by its manual; the first column of the table is every one of its occurrences.
FAILURES = {
    "openat": ["EIO", "ENOSPC", "EMFILE", "EACCES"],
    "read": ["EIO", "ENOMEM"],
    "write": ["EIO", "ENOSPC", "EDQUOT"],
    "fsync": ["EIO", "ENOSPC"],
    "renameat": ["EIO", "ENOSPC", "EACCES"],
    "renameat2": ["EIO", "ENOSPC", "EACCES"],
    "close": ["EIO", "ENOSPC"],
    "newfstatat": ["EIO", "ENOMEM"],
    "fchmod": ["EIO", "EPERM"],
    "mkdir": ["EIO", "ENOSPC", "EACCES"],
    "unlinkat": ["EIO"],
}
# A save ends with each of these: if they always fail, nothing may be said to be kept.
NEEDED = {"write", "fsync", "renameat"}
DAMAGED = b'{"sessions":[{"id":"0E1'
TMPFS = 256 * 1024
PAGE = 4096


def failing_calls():
    row = proof.Row("a failing call (each, once and for ever)", "faults")
    for kind in ("first start", "with documents", "damaged documents"):
        with tempfile.TemporaryDirectory(prefix="brevlin-proof-") as name:
            base = pathlib.Path(name) / "base"
            base.mkdir()
            promised = kills.make_base(base, 0 if kind == "first start" else 8)
            if kind == "damaged documents":
                promised = damage(base, promised)
            calls = kills.calls_of_a_save(base, promised)
            for call, errors in FAILURES.items():
                first, last = calls.get(call, (1, 0))
                for occurrence in range(first, last + 1):
                    for error in errors:
                        for forever in ("", "+"):
                            says_nothing = forever and call in NEEDED and occurrence == first
                            fail(row, base, promised, f"inject={call}:error={error}:when={occurrence}{forever}", kind,
                                 says_nothing)
    return [row.with_few_missed()]


def damage(base, promised):
    """Nothing decodes; the bytes are the user's all the same."""
    for document in ("history", journal.TIMER, journal.PREFERENCES):
        journal.path_of(base, document).write_bytes(DAMAGED)
    fresh = journal.Journal()
    fresh.last = promised.last
    return fresh


def fail(row, base, promised, injection, kind, says_nothing):
    folder, code, lines, log = kills.run_with(base, promised, injection)
    if "(INJECTED)" not in log:
        row.missed += 1
        return
    following = promised.copy().follow(lines)
    verdict = judge(following, folder, kind)
    if code:
        verdict["crashed"] = f"exit {code}: {log[-300:]}"
    if says_nothing and any(line.startswith("saved") for line in lines):
        verdict["wrong"] = f"it is said to be kept: {[line for line in lines if line.startswith('saved')]}"
    if name := renamed_unsynced(log):
        verdict["wrong"] = f"{name} took its place although its sync had failed"
    # What failed once is made good in the same run; what always failed, by nobody.
    if not verdict and not injection.endswith("+") and not following.is_all_saved():
        verdict["wrong"] = f"one failure, and something never reached the disk: {following.possible} {following.saved}"
    if not verdict:
        following.adopt(folder, DAMAGED)
        code, lines, errors = journal.write(folder, 1, following.last + 1)
        verdict = judge(following.follow(lines), folder, kind)
        if code or not following.is_all_saved():
            verdict["wrong"] = f"the next start does not go on: {code} {errors[-300:]}"
    row.add(verdict, f"{kind}: {kills.command(promised, injection)}")


def renamed_unsynced(log):
    """A file whose sync was made to fail and that was renamed all the same. Its bytes are there, until a power cut."""
    failed = [match.group(1) for match in re.finditer(r"fsync\(\d+<[^>]*/([^/>]+)>\).*INJECTED", log)]
    return next((name for name in failed if re.search(rf'renameat\([^"]*"{re.escape(name)}"', log)), None)


def judge(promised, folder, kind):
    if kind != "damaged documents":
        verdict = promised.judge(folder)
        if journal.set_aside(folder):
            verdict["wrong"] = "a sound document was set aside"
        return verdict
    kept = collections.Counter(path.parent.name for path in folder.rglob("*.json") if path.read_bytes() == DAMAGED)
    if kept != {"data": 1, "config": 2}:
        return {"lost": f"of the damaged documents only {dict(kept)} are left"}
    # Those that still stand in their places say nothing about the rest.
    return promised.judge(folder, unreadable=DAMAGED)


def full_disk():
    row = proof.Row("a full disk, page by page", "disks")
    if not proof.is_root():
        row.skipped = "only root may mount a small disk"
        return [row]
    with tempfile.TemporaryDirectory(prefix="brevlin-proof-") as name:
        disk = pathlib.Path(name) / "disk"
        disk.mkdir()
        for pages in range(0, 28):
            if not proof.mounted("mount", "-t", "tmpfs", "-o", f"size={TMPFS}", "none", disk):
                row.skipped = "mounting is forbidden here"
                return [row]
            try:
                fill_and_write(row, disk, pages)
            finally:
                subprocess.run(["umount", "-l", disk], check=False)
    return [row]


def fill_and_write(row, disk, pages):
    """Leaves so many pages, writes until nothing fits, makes room, and expects everything to be there."""
    promised = kills.make_base(disk)
    status = os.statvfs(disk)
    filler = disk / "filler"
    filler.write_bytes(bytes(max(0, (status.f_bfree - pages) * PAGE)))
    with subprocess.Popen([journal.WRITER, disk, "20", str(promised.last + 1)], stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE) as writer:
        lines = []
        for line in writer.stdout:
            lines.append(line.decode().strip())
            if lines[-1] == "waiting":
                break
        promised.follow(lines)
        verdict = promised.judge(disk)
        filler.unlink()
        rest, _ = writer.communicate(b"\n", timeout=60)
    promised.follow(rest.decode().splitlines())
    verdict = verdict or promised.judge(disk)
    if writer.returncode:
        verdict["crashed"] = f"exit {writer.returncode}"
    if not verdict and (not promised.ended or not promised.is_all_saved() or journal.set_aside(disk)):
        verdict["wrong"] = f"with room again, not everything was saved: {promised.possible} {promised.saved}"
    row.add(verdict, f"tmpfs of {TMPFS} bytes with {pages} pages left")
