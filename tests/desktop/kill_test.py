"""What the documents have acknowledged outlives the process, at whatever moment it is killed."""

import pathlib
import re
import tempfile
import unittest

import journal
import kills
import proof


class Kill(unittest.TestCase):
    def test_acknowledged_documents_outlive_random_kills(self):
        row, = kills.random_kills(proof.Budget(3))
        self.assertTrue(row.is_clean(), row)
        self.assertGreater(row.count, 15)

    def test_a_record_is_acknowledged_once_file_and_folder_are_on_the_disk(self):
        # A kill leaves the kernel's memory alone; only the order of the calls tells what a power cut would leave.
        with tempfile.TemporaryDirectory(prefix="brevlin-") as folder:
            log = pathlib.Path(folder) / "calls"
            journal.write(folder, 2, prefix=["strace", "-f", "-y", "-o", log, "-e", "trace=/^write,fsync,/^rename"])
            names = {r'write\(\d+<.*/data/.*\.tmp>.* = \d': "write", r'fsync\(\d+<.*/data/.*\.tmp>\) += 0': "sync",
                     r'rename.*\.tmp", .*"sessions-v1\.json".* = 0': "rename",
                     r'fsync\(\d+<.*/data>\) += 0': "sync folder", r'writev?\(1<.*"saved history': "acknowledge"}
            done = [name for line in log.read_text().splitlines() for call, name in names.items() if re.search(call, line)]
            self.assertEqual(done[:5], ["write", "sync", "rename", "sync folder", "acknowledge"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
