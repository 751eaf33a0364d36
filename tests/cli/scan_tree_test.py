"""scan_tree and archive_tree show or write what they find, or say in one line why they cannot.

    scan_tree_test.py SCAN_TREE ARCHIVE_TREE
"""

import os
import pathlib
import stat
import subprocess
import sys
import tempfile
import unittest

SCAN_TREE, ARCHIVE_TREE = sys.argv[1:3]
NOBODY = 65534

# A line break, the start of a terminal's control sequences in its three spellings, and what turns
# the direction of the text around.
HOSTILE = [b"\n", b"\x1b", "\u009b".encode(), b"\x9b", "\u202e".encode()]


def become_nobody():
    os.setgroups([])
    os.setgid(NOBODY)
    os.setuid(NOBODY)


def run(*command, unprivileged=False):
    """Status, output and complaint, all bytes. An unprivileged run of root's is nobody's."""
    other = become_nobody if unprivileged and os.geteuid() == 0 else None
    done = subprocess.run(command, capture_output=True, preexec_fn=other, cwd="/")
    return done.returncode, done.stdout, done.stderr


def facts(path):
    """What must not change of a file that nobody writes to."""
    found = os.lstat(path)
    return found.st_ino, found.st_mode, found.st_rdev, found.st_size, found.st_mtime_ns


class InAFolder(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        self.folder.chmod(0o777)
        self.scanned = self.folder / "scanned"
        self.scanned.mkdir()

    def file(self, name, size=0):
        path = os.path.join(os.fsencode(self.scanned), os.fsencode(name))
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.truncate(size)

    def closed_folder(self):
        """A folder that may not be listed by run(unprivileged=True)."""
        try:
            status, _, _ = run(SCAN_TREE, unprivileged=True)
        except OSError as error:
            self.skipTest(f"a user without rights cannot run the programs: {error}")
        self.assertEqual(status, 2)
        closed = self.folder / "closed"
        closed.mkdir(mode=0)
        self.addCleanup(closed.chmod, 0o700)
        return closed

    def expect_complaint(self, *command, **options):
        status, output, complaint = run(*command, **options)
        self.assertEqual((status, output), (1, b""))
        self.assertRegex(complaint, rb"\A[^\n]+\n\Z")
        return complaint


class ScanTree(InAFolder):
    def test_rows_are_sorted_by_size_and_end_with_the_total(self):
        self.file("small", 10)
        self.file("folder/b", 2500)
        self.file("folder/deeper/c", 500)
        self.file("large", 5_000_000_000)
        self.file("none")

        self.assertEqual(run(SCAN_TREE, self.scanned), (0, b"""\
5.00 GB  large
3.00 KB  folder/
0.01 KB  small
0.00 KB  none
5.00 GB  in 7 entries
""", b""))

    def test_sizes_are_aligned(self):
        self.file("a", 999_000)
        self.file("b", 1_000)

        self.assertEqual(run(SCAN_TREE, self.scanned)[1], b"""\
999.00 KB  a
  1.00 KB  b
  1.00 MB  in 2 entries
""")

    def test_an_empty_folder(self):
        self.assertEqual(run(SCAN_TREE, self.scanned), (0, b"0.00 KB  in 0 entries\n", b""))

    def test_only_the_largest_are_shown_but_all_are_counted(self):
        for i in range(100):
            self.file(f"file{i}", 1000 * (i + 1))

        lines = run(SCAN_TREE, self.scanned)[1].decode().splitlines()
        shown = [line.split("  ")[-1] for line in lines[:-2]]
        self.assertEqual(shown, [f"file{i}" for i in range(99, 99 - len(shown), -1)])
        self.assertEqual(lines[-2].strip(), f"and {100 - len(shown)} smaller ones")
        self.assertRegex(lines[-1], r"^\s*5\.05 MB  in 100 entries$")

    def test_hostile_names_do_not_reach_the_terminal(self):
        for i, hostile in enumerate(HOSTILE):
            self.file(b"name%d" % i + hostile + b"[2J", 10 + i)
            self.file(b"folder%d" % i + hostile + b"/" + hostile + b"inside", 20 + i)

        status, table, complaint = run(SCAN_TREE, self.scanned)
        self.assertEqual((status, complaint), (0, b""))
        self.assertEqual(table.count(b"\n"), 2 * len(HOSTILE) + 1)
        for i, hostile in enumerate(HOSTILE):
            self.assertIn(b"name%d" % i, table)
            self.assertIn(b"folder%d" % i, table)
            if hostile != b"\n":
                self.assertNotIn(hostile, table)
        table.decode()  # what is no text would be left to the terminal

        status, dump, complaint = run(SCAN_TREE, "--dump", self.scanned)
        self.assertEqual((status, complaint), (0, b""))
        self.assertEqual(dump.count(b"\n"), 3 * len(HOSTILE) + 1)
        for hostile in HOSTILE[1:]:
            self.assertNotIn(hostile, dump)

    def test_what_cannot_be_listed(self):
        self.file("file", 5)
        for options in [], ["--dump"]:
            for path in self.folder / "missing", self.scanned / "file", "":
                with self.subTest(options=options, path=path):
                    self.expect_complaint(SCAN_TREE, *options, path)

    def test_a_folder_that_may_not_be_read(self):
        closed = self.closed_folder()
        for options in [], ["--dump"]:
            self.expect_complaint(SCAN_TREE, *options, closed, unprivileged=True)

    def test_a_complaint_about_a_hostile_name(self):
        for hostile in HOSTILE:
            path = os.fsencode(self.folder) + b"/missing" + hostile + b"[2J"
            complaint = self.expect_complaint(SCAN_TREE, path)
            self.assertNotIn(hostile, complaint[:-1])

    def test_a_full_disk(self):
        self.file("file", 5)
        with open("/dev/full", "wb") as full:
            done = subprocess.run([SCAN_TREE, self.scanned], stdout=full,
                                  stderr=subprocess.DEVNULL)
        self.assertEqual(done.returncode, 1)

    def test_wrong_usage(self):
        for arguments in [], ["a", "b"], ["--dump"], ["--dump", "a", "b"]:
            status, output, complaint = run(SCAN_TREE, *arguments)
            self.assertEqual((status, output), (2, b""))
            self.assertTrue(complaint.startswith(b"usage: "))


class ArchiveTree(InAFolder):
    def setUp(self):
        super().setUp()
        self.file("file", 5)
        # Beside the target nothing else may lie, neither before nor after.
        self.place = self.folder / "place"
        self.place.mkdir()
        self.place.chmod(0o777)
        self.target = self.place / "target"

    def expect_only(self, *paths):
        self.assertEqual(sorted(self.place.iterdir()), sorted(paths))

    def test_what_cannot_be_listed_leaves_the_file_as_it_is(self):
        self.target.write_bytes(b"old")
        before = facts(self.target)
        for path in self.folder / "missing", self.scanned / "file", "":
            with self.subTest(path):
                self.expect_complaint(ARCHIVE_TREE, path, self.target)
                self.assertEqual(facts(self.target), before)
                self.assertEqual(self.target.read_bytes(), b"old")
                self.expect_only(self.target)

    def test_what_cannot_be_listed_makes_no_file(self):
        self.expect_complaint(ARCHIVE_TREE, self.folder / "missing", self.target)
        self.expect_only()

    def test_a_folder_that_may_not_be_read_leaves_the_file_as_it_is(self):
        closed = self.closed_folder()
        self.target.write_bytes(b"old")
        self.target.chmod(0o666)
        before = facts(self.target)
        # So that it is not for want of rights at the target.
        self.assertEqual(run(ARCHIVE_TREE, self.scanned, self.place / "other", unprivileged=True),
                         (0, b"", b""))

        self.expect_complaint(ARCHIVE_TREE, closed, self.target, unprivileged=True)
        self.assertEqual(facts(self.target), before)
        self.expect_only(self.place / "other", self.target)

    def expect_refusal(self):
        before = facts(self.target)
        self.expect_complaint(ARCHIVE_TREE, self.scanned, self.target)
        self.assertEqual(facts(self.target), before)
        self.expect_only(self.target)

    def test_a_pipe_is_not_replaced(self):
        os.mkfifo(self.target)
        self.expect_refusal()

    def test_a_device_is_not_replaced(self):
        try:
            os.mknod(self.target, 0o666 | stat.S_IFCHR, os.makedev(1, 3))
        except PermissionError:
            self.skipTest("needs the right to make a device")
        self.expect_refusal()

    def test_a_folder_is_not_replaced(self):
        self.target.mkdir()
        self.expect_refusal()

    def test_a_link_is_replaced_and_not_followed(self):
        pointed_to = self.folder / "elsewhere"
        pointed_to.write_bytes(b"untouched")
        before = facts(pointed_to)
        for destination in pointed_to, self.folder / "nowhere":
            with self.subTest(destination):
                self.target.unlink(missing_ok=True)
                self.target.symlink_to(destination)

                self.assertEqual(run(ARCHIVE_TREE, self.scanned, self.target), (0, b"", b""))
                self.assertTrue(stat.S_ISREG(os.lstat(self.target).st_mode))
                self.assertTrue(self.target.read_bytes().startswith(b"bplist"))
                self.assertEqual(facts(pointed_to), before)
                self.assertEqual(pointed_to.read_bytes(), b"untouched")
                self.assertFalse((self.folder / "nowhere").exists())
                self.expect_only(self.target)

    def test_a_complaint_about_a_hostile_name(self):
        for hostile in HOSTILE:
            missing = os.fsencode(self.folder) + b"/missing" + hostile + b"[2J"
            for arguments in [missing, self.target], [self.scanned, missing + b"/file"]:
                with self.subTest(arguments):
                    complaint = self.expect_complaint(ARCHIVE_TREE, *arguments)
                    self.assertNotIn(hostile, complaint[:-1])

    def test_wrong_usage(self):
        for arguments in [], ["a"], ["a", "b", "c"]:
            status, output, complaint = run(ARCHIVE_TREE, *arguments)
            self.assertEqual((status, output), (2, b""))
            self.assertTrue(complaint.startswith(b"usage: "))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
