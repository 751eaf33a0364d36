"""What a scan writes is a property list that another reader understands.

The file is read here with Python's plistlib, UIDs are followed by hand, and the tree found is
compared with the folder on disk, with a scan of it and with what dump_archive reads.

    scan_file_test.py ARCHIVE_TREE SCAN_TREE DUMP_ARCHIVE
"""

import json
import os
import plistlib
import subprocess
import sys
import tempfile
import unittest

ARCHIVE_TREE, SCAN_TREE, DUMP_ARCHIVE = sys.argv[1:4]

ITEM = ["LUMFileItem", "NSObject"]
CONTAINER = ["LUMFileContainer", "LUMFileItem", "NSObject"]
ITEM_KEYS = {"itemName", "itemSize", "$class"}
CONTAINER_KEYS = ITEM_KEYS | {"subitems", "parentContainer"}

ODD_NAMES = [
    b"new\nline", b"tab\t", b"quote\"back\\slash", b" ", b"$null", b"$class", b"\x01\x7f", b"-n",
    b"n" * 255, "\N{GRINNING FACE}".encode(), "\u00e9".encode(), "e\u0301".encode(),
    b"\xff\xfe", b"half\xc3", b"\xed\xa0\x80", "\uef80\uefff".encode(), b"\xff" * 255,
]


def output_of(*command):
    return subprocess.run(command, capture_output=True, check=True).stdout


def make_tree(root):
    """Files of odd names at two depths, empty folders, and sizes up to 2^40."""
    for depth, folder in enumerate([root, os.path.join(root, b"folder \xf0")]):
        os.makedirs(folder, exist_ok=True)
        for i, name in enumerate(ODD_NAMES):
            with open(os.path.join(folder, name), "wb") as file:
                file.truncate(i * 1000 + depth)
    os.makedirs(os.path.join(root, b"empty", b"below", b"$null"))
    for size in 2**31 - 1, 2**31, 2**32 - 1, 2**32, 5_000_000_000, 2**40:
        with open(os.path.join(root, b"size %d" % size), "wb") as file:
            file.truncate(size)


def on_disk(folder, path=b""):
    """Path and size of everything below a folder; the size of a folder is None."""
    found = set()
    for entry in os.scandir(os.path.join(folder, path)):
        inside = os.path.join(path, entry.name)
        if entry.is_dir(follow_symlinks=False):
            found |= {(inside, None)} | on_disk(folder, inside)
        else:
            found.add((inside, entry.stat(follow_symlinks=False).st_size))
    return found


def name_bytes(text):
    """The file's name from its archived text: U+EF80 to U+EFFF stand for single bytes."""
    return b"".join(bytes([ord(c) - 0xEF00]) if 0xEF80 <= ord(c) <= 0xEFFF else c.encode()
                    for c in text)


class Archive:
    def __init__(self, path):
        with open(path, "rb") as file:
            self.top = plistlib.load(file, fmt=plistlib.FMT_BINARY)
        self.objects = self.top["$objects"]
        self.root = self.top["$top"]["root"]

    def follow(self, uid):
        found = self.objects[uid.data]
        return None if found == "$null" else found

    def chain(self, node):
        described = self.follow(node["$class"])
        assert described["$classname"] == described["$classes"][0]
        return described["$classes"]

    def text(self, uid):
        found = self.follow(uid)
        if isinstance(found, dict):
            assert self.chain(found) == ["NSMutableString", "NSString", "NSObject"]
            assert set(found) == {"NS.string", "$class"}
            return found["NS.string"]
        return found

    def children(self, node):
        subitems = self.follow(node["subitems"])
        assert self.chain(subitems) == ["NSMutableArray", "NSArray", "NSObject"]
        assert set(subitems) == {"NS.objects", "$class"}
        return subitems["NS.objects"]

    def nodes(self):
        """(uid, enclosing uid, depth, node) of every node in preorder."""
        waiting = [(self.root, None, 0)]
        while waiting:
            uid, enclosing, depth = waiting.pop()
            node = self.follow(uid)
            yield uid, enclosing, depth, node
            if self.chain(node) == CONTAINER:
                waiting += [(child, uid, depth + 1) for child in reversed(self.children(node))]


class ScanFile(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.temporary.cleanup)
        cls.folder = os.path.join(os.fsencode(cls.temporary.name), b"scanned")
        cls.file = os.path.join(cls.temporary.name, "scan.archive")
        make_tree(cls.folder)
        subprocess.run([ARCHIVE_TREE, cls.folder, cls.file], check=True)
        cls.archive = Archive(cls.file)

    def test_frame(self):
        self.assertEqual(self.archive.top["$archiver"], "NSKeyedArchiver")
        self.assertEqual(self.archive.top["$version"], 100000)
        self.assertEqual(set(self.archive.top), {"$archiver", "$version", "$objects", "$top"})
        self.assertEqual(set(self.archive.top["$top"]), {"root"})
        self.assertEqual(self.archive.objects[0], "$null")

    def test_nodes_are_of_two_classes_with_their_keys(self):
        kinds = {(tuple(self.archive.chain(node)), frozenset(node))
                 for _, _, _, node in self.archive.nodes()}
        self.assertEqual(kinds, {(tuple(ITEM), frozenset(ITEM_KEYS)),
                                 (tuple(CONTAINER), frozenset(CONTAINER_KEYS))})

    def test_parents_are_the_folders_that_list_the_node(self):
        for _, enclosing, _, node in self.archive.nodes():
            if "parentContainer" in node:
                self.assertEqual(node["parentContainer"], enclosing or plistlib.UID(0))

    def test_the_tree_is_the_folder_on_disk(self):
        found = set()
        path = []
        for _, _, depth, node in self.archive.nodes():
            path[depth:] = [name_bytes(self.archive.text(node["itemName"]))]
            size = self.archive.follow(node["itemSize"])
            found.add((b"/".join(path[1:]), None if "subitems" in node else size))
        self.assertEqual(path[0], self.folder)
        self.assertEqual(found - {(b"", None)}, on_disk(self.folder))

    def test_scan_and_dump_say_the_same(self):
        lines = []
        for _, enclosing, depth, node in self.archive.nodes():
            is_folder = "subitems" in node
            parent = "-" if not is_folder else "P" if enclosing else "0"
            lines.append("\t".join([str(depth), "C" if is_folder else "F",
                                    str(self.archive.follow(node["itemSize"])), parent,
                                    json.dumps(self.archive.text(node["itemName"]))]) + "\n")
        expected = "".join(lines).encode()
        self.assertEqual(output_of(DUMP_ARCHIVE, self.file), expected)
        self.assertEqual(output_of(SCAN_TREE, "--dump", self.folder), expected)

    def test_only_the_owner_may_read_the_file(self):
        self.assertEqual(os.stat(self.file).st_mode & 0o7777, 0o600)

    def test_a_file_that_cannot_be_written_is_told_in_one_line(self):
        done = subprocess.run([ARCHIVE_TREE, self.folder, "/nonexistent/file"], capture_output=True)
        self.assertEqual((done.returncode, done.stdout), (1, b""))
        self.assertRegex(done.stderr, rb"\A[^\n]+\n\Z")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
