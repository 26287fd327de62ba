"""Cuts the power: an ext4 image on a loop device is shut down by the file system's own ioctl while the writer works.
What the disk had not been told to keep is gone then, as it is after a real cut."""

import fcntl
import os
import pathlib
import struct
import subprocess
import tempfile
import threading
import time

import journal
import proof

# linux/ext4.h: EXT4_IOC_SHUTDOWN, _IOR('X', 125, __u32)
SHUTDOWN = (2 << 30) | (4 << 16) | (ord("X") << 8) | 125
JOURNAL_FLUSHED, NOTHING_FLUSHED = 1, 2
IMAGE_SIZE = 64 << 20
LONGEST_LIFE = 0.08  # seconds from the first line on


def power_cuts(budget):
    row = proof.Row("power cuts (ext4 on a loop device)", "cuts")
    if not proof.is_root():
        row.skipped = "only root may mount a loop device"
        return [row]
    with tempfile.TemporaryDirectory(prefix="brevlin-proof-") as name:
        image, disk = pathlib.Path(name) / "image", pathlib.Path(name) / "disk"
        disk.mkdir()
        promised = make_disk(image)
        while budget.lasts():
            if not proof.mounted("mount", "-o", "loop", image, disk):
                row.skipped = "mounting a loop device is forbidden here, or the disk could not be mounted again"
                break
            try:
                output, failed = write_until_cut(disk, promised.last + 1, budget.chance)
            finally:
                subprocess.run(["umount", disk], check=False)
            promised.follow(journal.whole_lines(output))
            verdict = look_again(image, disk, promised)
            if failed in journal.CRASH_SIGNALS:
                verdict["crashed"] = f"signal {-failed}"
            row.add(verdict, f"cut {row.count + 1} of seed {budget.seed}: "
                             f"proofs/run --only power_cuts --seed {budget.seed}")
            if verdict:
                promised = make_disk(image)
    return [row]


def make_disk(image):
    image.unlink(missing_ok=True)
    with open(image, "wb") as file:
        file.truncate(IMAGE_SIZE)
    subprocess.run(["mkfs.ext4", "-q", "-F", image], check=True)
    return journal.Journal()


def write_until_cut(disk, first, chance):
    """The lines that were said until the cut, and the exit code of the writer."""
    with subprocess.Popen([journal.WRITER, disk, "0", str(first)], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE) as writer:
        said = [writer.stdout.readline()]
        reader = threading.Thread(target=lambda: said.append(writer.stdout.read()))
        reader.start()
        time.sleep(chance.uniform(0, LONGEST_LIFE))
        handle = os.open(disk, os.O_RDONLY | os.O_DIRECTORY)
        fcntl.ioctl(handle, SHUTDOWN, struct.pack("I", chance.choice([JOURNAL_FLUSHED, NOTHING_FLUSHED])))
        os.close(handle)
        writer.kill()
        reader.join()
    return b"".join(said), writer.returncode


def look_again(image, disk, promised):
    """What the promises are worth after the next start of the machine."""
    if not proof.mounted("mount", "-o", "loop", image, disk):
        return {"lost": "the disk cannot be mounted again"}
    try:
        verdict = promised.judge(disk)
        if journal.set_aside(disk):
            verdict["wrong"] = "a document was set aside"
        if not verdict:
            promised.adopt(disk)
    finally:
        subprocess.run(["umount", disk], check=False)
    return verdict
