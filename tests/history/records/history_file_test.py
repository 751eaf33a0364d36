#!/usr/bin/python3
"""Reads a history file with a property-list reader that is not ours: WRITE_HISTORY"""

import plistlib
import subprocess
import sys
import tempfile
import unittest

WRITE_HISTORY = sys.argv.pop(1)


class HistoryFileTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with tempfile.NamedTemporaryFile() as file:
            subprocess.run([WRITE_HISTORY, file.name], check=True)
            with open(file.name, "rb") as written:
                cls.archive = plistlib.load(written)
        cls.objects = cls.archive["$objects"]

    def object(self, uid):
        self.assertIsInstance(uid, plistlib.UID)
        return self.objects[uid.data]

    def class_names(self, instance):
        return self.object(instance["$class"])["$classes"]

    def text(self, uid):
        value = self.object(uid)
        if isinstance(value, dict):
            self.assertEqual(self.class_names(value), ["NSMutableString", "NSString", "NSObject"])
            return value["NS.string"]
        return None if value == "$null" else value

    def date(self, uid):
        value = self.object(uid)
        if value == "$null":
            return None
        self.assertEqual(self.class_names(value), ["NSDate", "NSObject"])
        self.assertIsInstance(value["NS.time"], float)
        return value["NS.time"]

    def records(self):
        root = self.object(self.archive["$top"]["root"])
        self.assertEqual(self.class_names(root), ["NSMutableArray", "NSArray", "NSObject"])
        return [self.object(uid) for uid in root["NS.objects"]]

    def test_the_frame_is_that_of_a_keyed_archive(self):
        self.assertEqual(self.archive["$archiver"], "NSKeyedArchiver")
        self.assertEqual(self.archive["$version"], 100000)
        self.assertEqual(list(self.archive["$top"]), ["root"])
        self.assertEqual(self.objects[0], "$null")

    def test_records_have_their_class_and_keys(self):
        for record in self.records():
            self.assertEqual(self.class_names(record), ["KORVENHistoryItem", "NSObject"])
            self.assertEqual(
                set(record), {"$class", "scanPath", "scanTotal", "scanKey", "scanDate"}
            )

    def test_the_values_are_those_that_were_written(self):
        values = [
            (
                self.text(record["scanPath"]),
                self.text(record["scanTotal"]),
                self.text(record["scanKey"]),
                self.date(record["scanDate"]),
            )
            for record in self.records()
        ]
        self.assertEqual(
            values,
            [
                ("/home/ada", "12.34 GB", "6F1C2D3E-0A4B-4C5D-8E9F-0123456789AB", 0.5),
                ("/m\u00e9dia/\U0001f600\n", "1.00 KB", "KEY 2", -86400.0),
                ("$null", "", "\uefff", 1e9),
                (None, None, None, None),
            ],
        )


if __name__ == "__main__":
    unittest.main()
