"""dump_archive prints what an archive holds, or one line that says why it cannot.

    dump_archive_test.py DUMP_ARCHIVE VECTORS
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM, VECTORS = sys.argv[1], pathlib.Path(sys.argv[2])


def run(*arguments):
    done = subprocess.run([PROGRAM, *arguments], capture_output=True)
    return done.returncode, done.stdout, done.stderr.decode()


class DumpArchive(unittest.TestCase):
    def expect_complaint(self, *arguments):
        status, output, complaint = run(*arguments)
        self.assertEqual(status, 1)
        self.assertEqual(output, b"")
        self.assertRegex(complaint, r"\A[^\n]+\n\Z")
        return complaint

    def test_every_vector(self):
        for line in (VECTORS / "vectors.txt").read_text().splitlines():
            file, content, outcome, dump = line.split("\t")
            arguments = ["--history"] * (content == "history") + [VECTORS / file]
            with self.subTest(file):
                if outcome != "read":
                    self.expect_complaint(*arguments)
                    continue
                status, output, complaint = run(*arguments)
                self.assertEqual((status, complaint), (0, ""))
                self.assertTrue(output == (VECTORS / dump).read_bytes())

    def test_what_cannot_be_opened(self):
        with tempfile.TemporaryDirectory() as folder:
            for option in [], ["--history"]:
                self.assertIn("No such file", self.expect_complaint(*option, folder + "/missing"))
                self.assertIn("not a regular file", self.expect_complaint(*option, folder))

    def test_a_tree_is_no_history_and_the_other_way_round(self):
        self.expect_complaint("--history", VECTORS / "valid/basic.bplist")
        self.expect_complaint(VECTORS / "valid/history_3.bplist")

    def test_a_full_disk(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([PROGRAM, VECTORS / "valid/basic.bplist"], stdout=full,
                                  stderr=subprocess.DEVNULL)
        self.assertEqual(done.returncode, 1)

    def test_wrong_usage(self):
        for arguments in [], ["a", "b"], ["--history", "a", "b"]:
            status, output, complaint = run(*arguments)
            self.assertEqual((status, output), (2, b""))
            self.assertTrue(complaint.startswith("usage: "))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
