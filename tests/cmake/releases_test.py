#!/usr/bin/python3
"""Proves what cmake/Releases.cmake makes of a changelog: releases_test.py CMAKE"""

import datetime
import email.utils
import os
import re
import subprocess
import sys
import tempfile
import unittest

PROJECT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
CMAKE = sys.argv.pop(1)

SCRIPT = """
set(PROJECT_SOURCE_DIR "{folder}")
set(PROJECT_VERSION 1.1.0)
include("{project}/cmake/Releases.cmake")
file(WRITE "{folder}/releases" "${{TESSALY_RELEASES}}")
file(WRITE "{folder}/date" "${{TESSALY_RELEASE_DATE}}")
file(WRITE "{folder}/debian" "${{TESSALY_DEBIAN_CHANGELOG}}")
"""
BEGIN = "# Changelog\n\nWhat changes.\n\n"
UNRELEASED = "## [Unreleased]\n\n### Added\n\n- Next\n\n"
RELEASED = """## [1.1.0] - 2026-12-09

### Added

- A window; it has [brackets
  and a second line

### Fixed

- C
- D

## [1.0.0] - 2024-02-29

- First
"""


class ReleasesTest(unittest.TestCase):
    def read(self, changelog, epoch=None):
        """What a changelog becomes: releases, date and Debian's form of it; or what went wrong."""
        with tempfile.TemporaryDirectory() as folder:
            for name, text in (
                ("CHANGELOG.md", changelog),
                ("script.cmake", SCRIPT.format(folder=folder, project=PROJECT)),
            ):
                with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                    file.write(text)
            environment = dict(os.environ)
            if epoch is not None:
                environment["SOURCE_DATE_EPOCH"] = str(epoch)
            result = subprocess.run(
                [CMAKE, "-P", os.path.join(folder, "script.cmake")],
                env=environment,
                capture_output=True,
                text=True,
                check=False,
            )
            if result.returncode != 0:
                return result.stderr
            texts = []
            for name in ("releases", "date", "debian"):
                with open(os.path.join(folder, name), encoding="utf-8") as file:
                    texts.append(file.read())
            return texts

    def test_released_versions_are_told_newest_first(self):
        releases, date, debian = self.read(BEGIN + RELEASED)
        self.assertEqual(
            re.findall(r'version="(.*?)" date="(.*?)" type="(.*?)"', releases),
            [("1.1.0", "2026-12-09", "stable"), ("1.0.0", "2024-02-29", "stable")],
        )
        self.assertEqual(date, "2026-12-09")
        maintainer = "Tessaly developers <developers@tessaly.example>"
        self.assertEqual(
            debian,
            "tessaly (1.1.0) unstable; urgency=medium\n"
            "\n"
            "  [ Added ]\n"
            "  * A window; it has [brackets and a second line\n"
            "\n"
            "  [ Fixed ]\n"
            "  * C\n"
            "  * D\n"
            "\n"
            f" -- {maintainer}  Wed, 09 Dec 2026 00:00:00 +0000\n"
            "\n"
            "tessaly (1.0.0) unstable; urgency=medium\n"
            "\n"
            "  * First\n"
            "\n"
            f" -- {maintainer}  Thu, 29 Feb 2024 00:00:00 +0000\n",
        )

    def test_what_is_not_released_stands_for_the_version_at_work(self):
        older = RELEASED[RELEASED.index("## [1.0.0]") :]
        releases, date, debian = self.read(BEGIN + UNRELEASED + older, epoch=86400)
        self.assertIn('version="1.1.0" date="1970-01-02" type="development"', releases)
        self.assertEqual(date, "1970-01-02")
        self.assertTrue(debian.startswith("tessaly (1.1.0) UNRELEASED; urgency=medium\n"), debian)

    def test_what_comes_after_the_version_at_work_has_no_version_yet(self):
        self.assertEqual(self.read(BEGIN + UNRELEASED + RELEASED), self.read(BEGIN + RELEASED))

    def test_every_date_has_its_day_of_the_week(self):
        days = [datetime.datetime(2024, 1, 1) + datetime.timedelta(n) for n in range(0, 1500, 25)]
        sections = "".join(
            f"## [1.{n}.0] - {day:%Y-%m-%d}\n\n- x\n\n" for n, day in enumerate(days)
        )
        _, _, debian = self.read(BEGIN + sections)
        expected = [
            email.utils.format_datetime(day.replace(tzinfo=datetime.timezone.utc)) for day in days
        ]
        self.assertEqual(re.findall(r"^ -- .*>  (.*)$", debian, re.MULTILINE), expected)

    def test_long_lines_are_broken_between_words(self):
        words = [f"word{n}" for n in range(60)]
        _, _, debian = self.read(BEGIN + f"## [1.1.0] - 2026-12-09\n\n- {' '.join(words)}\n")
        lines = debian.split("\n\n")[1].splitlines()
        self.assertGreater(len(lines), 4)
        self.assertTrue(all(len(line) <= 78 for line in lines), lines)
        self.assertTrue(all(line.startswith("    ") for line in lines[1:]), lines)
        self.assertEqual(" ".join(lines).split(), ["*", *words])

    def test_a_word_that_is_too_long_stays_whole(self):
        _, _, debian = self.read(BEGIN + f"## [1.1.0] - 2026-12-09\n\n- {'x' * 100} y\n")
        self.assertIn("x" * 100, debian)

    def test_a_date_that_is_none_is_refused(self):
        self.assertIn("write it as 2026-01-31", self.read(BEGIN + "## [1.1.0] - May\n\n- x\n"))


if __name__ == "__main__":
    unittest.main()
