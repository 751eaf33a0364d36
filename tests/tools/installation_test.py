#!/usr/bin/python3
"""Proves what "cmake --install" puts below a prefix: installation_test.py CMAKE BUILD [TEST...]"""

import configparser
import gzip
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

import skippable

PROJECT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
CMAKE, BUILD = sys.argv[1:3]
del sys.argv[1:3]

ID = "io.tessaly.Tessaly"
ICON_SIZES = (16, 22, 24, 32, 48, 64, 128, 256)
PROGRAM = "bin/tessaly"
MODULE = "lib/tessaly/modules/preview.so"
DECODER = "lib/tessaly/modules/preview-decoder"
HELPER = "libexec/tessaly/file-system-probe"
DESKTOP_FILE = f"share/applications/{ID}.desktop"
METAINFO = f"share/metainfo/{ID}.metainfo.xml"
MANUAL = "share/man/man1/tessaly.1.gz"
CHANGELOG = "share/doc/tessaly/changelog.gz"
# All that there is: no other library, no header, no test.
EXPECTED = {
    PROGRAM,
    MODULE,
    DECODER,
    HELPER,
    DESKTOP_FILE,
    METAINFO,
    MANUAL,
    CHANGELOG,
    "share/doc/tessaly/copyright",
    f"share/icons/hicolor/scalable/apps/{ID}.svg",
    *(f"share/icons/hicolor/{size}x{size}/apps/{ID}.png" for size in ICON_SIZES),
}


def text_of(*path):
    with open(os.path.join(*path), encoding="utf-8") as file:
        return file.read()


def project_version():
    return re.search(
        r"^CMAKE_PROJECT_VERSION:STATIC=(.+)$", text_of(BUILD, "CMakeCache.txt"), re.MULTILINE
    ).group(1)


def files_below(folder):
    return {
        os.path.relpath(os.path.join(where, name), folder)
        for where, _, names in os.walk(folder)
        for name in names
    }


class Installed(unittest.TestCase):
    """Tests of an installation, which they find in self.prefix."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.prefix = folder.name
        cls.install("--prefix", cls.prefix)

    @staticmethod
    def install(*arguments, **environment):
        subprocess.run(
            [CMAKE, "--install", BUILD, *arguments],
            env={**os.environ, **environment},
            stdout=subprocess.DEVNULL,
            check=True,
        )

    def path(self, name):
        return os.path.join(self.prefix, name)

    def passes(self, *command):
        result = subprocess.run(command, capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        return result.stdout + result.stderr


class InstallationTest(Installed):
    def test_there_is_all_and_nothing_else(self):
        self.assertEqual(files_below(self.prefix), EXPECTED)

    def test_everybody_may_read_and_nobody_write(self):
        for name in EXPECTED:
            mode = os.stat(self.path(name)).st_mode & 0o7777
            self.assertEqual(mode, 0o755 if name in (PROGRAM, DECODER, HELPER) else 0o644, name)

    def test_the_decoder_starts_and_is_of_no_use_by_itself(self):
        result = subprocess.run(
            [self.path(DECODER)], stdin=subprocess.DEVNULL, capture_output=True, check=False
        )
        self.assertEqual(result.returncode, 2)
        self.assertIn(b"a part of Tessaly", result.stderr)

    def test_a_packager_can_put_it_elsewhere_first(self):
        with tempfile.TemporaryDirectory() as stage:
            self.install("--prefix", "/usr", DESTDIR=stage)
            self.assertEqual(files_below(os.path.join(stage, "usr")), EXPECTED)

    def test_icons_have_the_size_of_their_folder(self):
        for size in ICON_SIZES:
            with open(self.path(f"share/icons/hicolor/{size}x{size}/apps/{ID}.png"), "rb") as file:
                header = file.read(24)
            self.assertEqual(struct.unpack(">II", header[16:24]), (size, size))
        ElementTree.parse(self.path(f"share/icons/hicolor/scalable/apps/{ID}.svg"))

    def test_the_manual_is_for_this_version_and_tells_every_option(self):
        with gzip.open(self.path(MANUAL), "rt", encoding="utf-8") as file:
            manual = file.read()
        self.assertRegex(manual, rf'^\.TH TESSALY 1 "[-0-9]+" "Tessaly {project_version()}"')
        help_text = self.ask("--help").stdout
        options = re.findall(r"--([a-z]+)", help_text)
        self.assertIn("version", options)
        for option in options:
            self.assertIn(f"\\-\\-{option}", manual)

    def test_the_changelog_has_every_release(self):
        with gzip.open(self.path(CHANGELOG), "rt", encoding="utf-8") as file:
            versions = re.findall(r"^tessaly \((.+)\) \w+; urgency=", file.read(), re.MULTILINE)
        self.assertEqual(versions, expected_versions())

    def ask(self, *arguments):
        """What the installed program says where there is no display."""
        environment = {"HOME": "/nonexistent", "LANG": "C.UTF-8"}
        for name in ("ASAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"):
            if name in os.environ:
                environment[name] = os.environ[name]
        return subprocess.run(
            [self.path(PROGRAM), *arguments],
            env=environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            check=False,
        )

    def test_the_program_starts_and_tells_its_version(self):
        result = self.ask("--version")
        self.assertEqual(
            (result.returncode, result.stdout, result.stderr),
            (0, f"tessaly {project_version()}\n", ""),
        )

    def test_the_program_refuses_what_it_does_not_understand(self):
        result = self.ask("-platform", "offscreen", "--bogus")
        self.assertEqual(result.returncode, 2, result.stderr)
        self.assertIn('"bogus"', result.stderr)
        self.assertEqual(result.stdout, "")


def expected_versions():
    """The releases of CHANGELOG.md, and the version that is being worked on."""
    versions = re.findall(r"^## \[([^\]]+)\]", text_of(PROJECT, "CHANGELOG.md"), re.MULTILINE)
    released = [version for version in versions if version != "Unreleased"]
    return released if project_version() in released else [project_version(), *released]


class DesktopFileTest(Installed):
    def entry(self):
        parser = configparser.RawConfigParser(strict=True)
        parser.optionxform = str
        parser.read_string(text_of(self.path(DESKTOP_FILE)))
        return parser["Desktop Entry"]

    def test_it_starts_the_program_with_its_icon(self):
        entry = self.entry()
        self.assertIn(f"bin/{entry['Exec']}", EXPECTED)
        self.assertIn(f"share/icons/hicolor/scalable/apps/{entry['Icon']}.svg", EXPECTED)

    def test_the_program_knows_its_name(self):
        header = text_of(PROJECT, "platform", "ProgramIdentity.hpp")
        self.assertEqual(re.findall(r'programId = "(.*)"', header), [ID])

    def test_it_is_translated(self):
        for language in languages():
            for key in ("GenericName", "Comment", "Keywords"):
                self.assertIn(f"{key}[{language}]", self.entry())

    def test_it_is_valid(self):
        if not shutil.which("desktop-file-validate"):
            self.skipTest("needs desktop-file-validate")
        self.assertEqual(self.passes("desktop-file-validate", self.path(DESKTOP_FILE)), "")


def languages():
    return re.findall(
        r"^tessaly_(\w+)\.ts$",
        "\n".join(os.listdir(os.path.join(PROJECT, "resources", "translations"))),
        re.MULTILINE,
    )


class MetainfoTest(Installed):
    def component(self):
        return ElementTree.parse(self.path(METAINFO)).getroot()

    def test_it_names_what_is_installed(self):
        component = self.component()
        self.assertEqual(component.findtext("id"), ID)
        self.assertIn(f"share/applications/{component.findtext('launchable')}", EXPECTED)
        self.assertIn(f"bin/{component.findtext('provides/binary')}", EXPECTED)

    def test_its_releases_are_those_of_the_changelog(self):
        releases = [release.get("version") for release in self.component().iter("release")]
        self.assertEqual(releases, expected_versions())

    def test_it_is_translated(self):
        language = "{http://www.w3.org/XML/1998/namespace}lang"
        self.assertGreaterEqual(set(languages()), {"de", "fr"})
        for tag in ("summary", "description/p", "description/ul/li"):
            said = [element.get(language) for element in self.component().findall(tag)]
            for spoken in languages():
                self.assertEqual(said.count(spoken), said.count(None), f"{tag} in {spoken}")

    def test_it_is_valid(self):
        if not shutil.which("appstreamcli"):
            self.skipTest("needs appstreamcli")
        self.passes("appstreamcli", "validate", "--no-net", self.path(METAINFO))


if __name__ == "__main__":
    skippable.main()
