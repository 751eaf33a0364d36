"""Property lists and keyed archives that we write mean the same to another reader.

They are read here with Python's plistlib and compared with values written down here, and with an
archive that another writer wrote. The file that the C++ tests read every type from is held against
the same values.

    plist_samples_test.py WRITE_PLIST_SAMPLES DATA_FOLDER
"""

import datetime
import math
import os
import plistlib
import subprocess
import sys
import tempfile
import unittest

WRITE_PLIST_SAMPLES, DATA_FOLDER = sys.argv[1:3]

UID = plistlib.UID
EPOCH = datetime.datetime(2001, 1, 1)

EVERY_TYPE = {
    "null": None,
    "booleans": [False, True],
    "integers": [0, 255, 256, 65536, 2**63 - 1, -1, -256, -(2**63), 2**63, 2**64 - 1],
    "reals": [0.0, 1.5, -1e300, math.inf],
    "dates": [EPOCH + datetime.timedelta(seconds=s) for s in (0, 730857600.5, -31708800)],
    "data": [b"", bytes(range(256))],
    "texts": ["", "1", "\u00e9 \U0001F600", "x" * 300],
    "uids": [UID(0), UID(255), UID(256), UID(2**32 - 1)],
    "containers": [[], {}, {"\u00e9": [[1]]}],
}


def load(*path):
    with open(os.path.join(*path), "rb") as file:
        return plistlib.load(file, fmt=plistlib.FMT_BINARY)


class PlistSamples(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        cls.folder = temporary.name
        subprocess.run([WRITE_PLIST_SAMPLES, cls.folder], check=True)

    def test_values_of_every_type(self):
        for path in [(self.folder, "values.bplist"),
                     (DATA_FOLDER, "property_list", "every_type.bplist")]:
            values = load(*path)
            self.assertEqual(values, EVERY_TYPE)
            # True == 1 == 1.0, but not in writing.
            self.assertEqual({key: repr(value) for key, value in values.items()},
                             {key: repr(value) for key, value in EVERY_TYPE.items()})

    def test_the_frame_of_an_archive(self):
        archive = load(self.folder, "history.archive")
        self.assertEqual(set(archive), {"$archiver", "$version", "$objects", "$top"})
        self.assertEqual(archive["$archiver"], "NSKeyedArchiver")
        self.assertEqual(archive["$version"], 100000)
        self.assertEqual(archive["$top"], {"root": UID(1)})
        self.assertEqual(archive["$objects"][0], "$null")

    def test_an_archive_is_what_another_writer_makes_of_the_same_records(self):
        self.assertEqual(load(self.folder, "history.archive"),
                         load(DATA_FOLDER, "archive", "valid", "history_3.bplist"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
