"""What the history has acknowledged outlives the process, at whatever moment it is killed."""

import json
import os
import pathlib
import random
import re
import subprocess
import tempfile
import time
import unittest

WRITER = os.environ["BREVLIN_HISTORY_WRITER"]
KILLS = 50
LONGEST_LIFE = 0.06  # seconds from the first record on


class Kill(unittest.TestCase):
    def test_acknowledged_records_outlive_fifty_kills(self):
        seed = random.randrange(2**32)
        moments = random.Random(seed)
        acknowledged = set()
        with tempfile.TemporaryDirectory(prefix="brevlin-") as folder:
            history = pathlib.Path(folder) / "sessions-v1.json"
            leftovers = 0
            for turn in range(KILLS):
                with subprocess.Popen([WRITER, history], stdout=subprocess.PIPE, text=True) as writer:
                    printed = [writer.stdout.readline()]
                    time.sleep(moments.uniform(0, LONGEST_LIFE))
                    writer.kill()
                    printed += writer.stdout.readlines()
                acknowledged.update(line.strip() for line in printed)
                stored = {record["id"] for record in json.loads(history.read_bytes())["sessions"]}
                self.assertLessEqual(acknowledged, stored, f"lost in turn {turn}, seed {seed}")
                # At most the one record of each turn whose acknowledgement the kill cut off.
                self.assertLessEqual(len(stored - acknowledged), turn + 1)
                leftovers += len(list(history.parent.iterdir())) > 1
            self.assertGreater(leftovers, 0, f"no kill hit a write, so nothing was tested; seed {seed}")
            self.assertLessEqual(len(list(history.parent.iterdir())), 2, "leftovers of earlier turns are removed")

    def test_a_record_is_acknowledged_once_file_and_folder_are_on_the_disk(self):
        # A kill leaves the kernel's memory alone; only the order of the calls tells what a power cut would leave.
        with tempfile.TemporaryDirectory(prefix="brevlin-") as folder:
            log, history = pathlib.Path(folder) / "calls", pathlib.Path(folder) / "data" / "sessions-v1.json"
            history.parent.mkdir()
            calls = ["strace", "-f", "-y", "-o", log, "-e", "trace=write,fsync,/^rename", WRITER, history]
            with subprocess.Popen(calls, stdout=subprocess.PIPE) as writer:
                for _ in range(3):
                    writer.stdout.readline()
                writer.stdout.close()  # the next acknowledgement ends it
            names = {r'write\(\d+<.*\.tmp>.* = \d': "write", r'fsync\(\d+<.*\.tmp>\) += 0': "sync",
                     r'rename.*\.tmp", .*"sessions-v1\.json".* = 0': "rename",
                     r'fsync\(\d+<.*/data>\) += 0': "sync folder", r'write\(1<': "acknowledge"}
            done = [name for line in log.read_text().splitlines() for call, name in names.items() if re.search(call, line)]
            self.assertEqual(done[:15], ["write", "sync", "rename", "sync folder", "acknowledge"] * 3)


if __name__ == "__main__":
    unittest.main(verbosity=2)
