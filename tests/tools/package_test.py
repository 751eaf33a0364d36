#!/usr/bin/python3
"""Makes the Debian package, looks into it and installs it: package_test.py CPACK BUILD [TEST...]

The package is rebuilt by PackageIsMade; the other tests look at what that left.
"""

import glob
import os
import re
import shutil
import stat
import subprocess
import sys
import tempfile
import unittest

import skippable

PROGRAMS = (
    "/usr/bin/tessaly",
    "/usr/lib/tessaly/modules/preview-decoder",
    "/usr/libexec/tessaly/file-system-probe",
)

CPACK, BUILD = sys.argv[1:3]
del sys.argv[1:3]
FOLDER = os.path.join(BUILD, "tests", "package")
HOMEPAGE = "https://tessaly.example/"


def needs(test, *programs):
    """Skips the test unless all of these programs are there."""
    missing = [program for program in programs if not shutil.which(program)]
    if missing:
        test.skipTest(f"needs {' and '.join(missing)}")


def run(*command, **more):
    return subprocess.run(
        command, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False, **more
    )


class PackageIsMade(unittest.TestCase):
    def test_cpack_makes_one_package(self):
        needs(self, "dpkg-shlibdeps", "file")
        shutil.rmtree(FOLDER, ignore_errors=True)
        made = run(CPACK, "--config", os.path.join(BUILD, "CPackConfig.cmake"), "-B", FOLDER)
        self.assertEqual(made.returncode, 0, made.stdout + made.stderr)
        self.assertEqual(len(glob.glob(os.path.join(FOLDER, "*.deb"))), 1, made.stdout)


class Package(unittest.TestCase):
    """Tests of the package, which they find in self.package."""

    def setUp(self):
        packages = glob.glob(os.path.join(FOLDER, "*.deb"))
        if not packages:
            self.skipTest("there is no package")
        self.package = packages[0]

    def output(self, *command):
        result = run(*command)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        return result.stdout

    def version(self):
        with open(os.path.join(BUILD, "CMakeCache.txt"), encoding="utf-8") as file:
            return re.search(r"^CMAKE_PROJECT_VERSION:STATIC=(.+)$", file.read(), re.M).group(1)


class PackageContent(Package):
    def fields(self):
        text = self.output("dpkg-deb", "--field", self.package)
        return dict(re.findall(r"^([A-Z][\w-]+): (.*)$", text, re.MULTILINE))

    def contents(self):
        """(mode, owner, path) of each file and folder."""
        lines = self.output("dpkg-deb", "--contents", self.package).splitlines()
        return [(line.split()[0], line.split()[1], line.split()[5]) for line in lines]

    def test_dpkg_is_told_what_the_package_is(self):
        fields = self.fields()
        self.assertEqual(fields["Package"], "tessaly")
        self.assertEqual(fields["Version"], self.version())
        self.assertEqual(fields["Section"], "utils")
        self.assertEqual(fields["Priority"], "optional")
        self.assertEqual(fields["Homepage"], HOMEPAGE)
        self.assertRegex(fields["Maintainer"], r"^[\w ]+ <[\w.]+@[\w.]+>$")
        self.assertNotRegex(fields["Description"], r"(?i)^(an? |the |tessaly)|\.$")
        architecture = self.output("dpkg", "--print-architecture").strip()
        self.assertEqual(fields["Architecture"], architecture)
        self.assertEqual(
            os.path.basename(self.package), f"tessaly_{self.version()}_{architecture}.deb"
        )

    def test_it_depends_on_the_libraries_of_the_program(self):
        fields = self.fields()
        for library in ("libc6", "libstdc++6", "libqt6widgets6", "libqt6dbus6", "libicu"):
            self.assertIn(library, fields["Depends"])
        self.assertIn("libqt6multimedia6", fields["Depends"])
        for library_of_the_decoder in ("libqt6pdf6", "libqt6svg6", "libseccomp2", "zlib1g"):
            self.assertIn(library_of_the_decoder, fields["Depends"])
        for package in ("udisks2", "qt6-image-formats-plugins", "fonts-inter"):
            self.assertIn(package, fields["Recommends"])

    def test_all_is_below_usr_and_belongs_to_root(self):
        contents = self.contents()
        self.assertIn("./usr/bin/tessaly", [path for _, _, path in contents])
        for mode, owner, path in contents:
            self.assertTrue("./usr/".startswith(path) or path.startswith("./usr/"), path)
            self.assertEqual(owner, "root/root", path)
            executable = path.endswith("/") or path[1:] in PROGRAMS
            self.assertEqual(mode[1:], "rwxr-xr-x" if executable else "rw-r--r--", path)

    def test_programs_and_module_are_stripped_and_hardened(self):
        needs(self, "readelf")
        with tempfile.TemporaryDirectory() as folder:
            self.output("dpkg-deb", "--extract", self.package, folder)
            for name in (*PROGRAMS, "/usr/lib/tessaly/modules/preview.so"):
                with self.subTest(name):
                    self.check_hardening(folder + name)

    def check_hardening(self, program):
        sections = self.output("readelf", "--wide", "--section-headers", program)
        headers = self.output("readelf", "--wide", "--file-header", "--segments", program)
        dynamic = self.output("readelf", "--wide", "--dynamic", program)
        calls = self.output("readelf", "--wide", "--dyn-syms", program)
        with open(program, "rb") as file:
            self.assertNotIn(os.path.abspath(BUILD).encode(), file.read())
        for section in (".symtab", ".debug_info"):
            self.assertNotIn(section, sections)
        self.assertRegex(headers, r"Type: +DYN")
        self.assertIn("GNU_RELRO", headers)
        self.assertRegex(headers, r"GNU_STACK.* RW ")
        self.assertRegex(dynamic, r"FLAGS.*\bNOW\b")
        self.assertNotRegex(dynamic, r"R(UN)?PATH")
        self.assertIn("__stack_chk_fail", calls)
        if program.endswith("/tessaly"):  # the module calls nothing that could be checked
            self.assertRegex(calls, r"__\w+_chk@")


class PackageIsClean(Package):
    def test_lintian_has_nothing_to_say(self):
        needs(self, "lintian")
        result = run("lintian", "--allow-root", "--fail-on", "error,warning", self.package)
        self.assertEqual((result.returncode, result.stdout), (0, ""), result.stderr)


class PackageInstallation(Package):
    def setUp(self):
        super().setUp()
        if os.geteuid() != 0:
            self.skipTest("needs root")
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = folder.name
        database = os.path.join(self.root, "var/lib/dpkg")
        for name in ("info", "triggers", "updates"):
            os.makedirs(os.path.join(database, name))
        for name in ("available", "status"):
            with open(os.path.join(database, name), "w", encoding="utf-8"):
                pass

    def dpkg(self, *arguments):
        # The folder has this one package alone, and so none of those that it depends on.
        return self.output("dpkg", f"--root={self.root}", "--force-depends", *arguments)

    def paths(self):
        """All below the root but what dpkg keeps for itself."""
        found = set()
        for where, folders, files in os.walk(self.root):
            folder = os.path.relpath(where, self.root)
            if folder == "var/lib/dpkg":
                folders.clear()
                continue
            found.update(os.path.normpath(os.path.join(folder, name)) for name in folders + files)
        return found

    def status(self):
        query = run("dpkg-query", f"--admindir={self.root}/var/lib/dpkg", "--list", "tessaly")
        lines = [line for line in query.stdout.splitlines() if re.match(r"\w\w +tessaly ", line)]
        return lines[0][:2] if lines else None

    def test_it_comes_runs_and_goes_without_a_trace(self):
        before = self.paths()
        self.dpkg("--install", self.package)
        self.assertEqual(self.status(), "ii")
        self.dpkg("--verify", "tessaly")

        program = os.path.join(self.root, "usr/bin/tessaly")
        self.assertTrue(os.stat(program).st_mode & stat.S_IXOTH)
        asked = run(program, "--version", env={"HOME": "/nonexistent"})
        self.assertEqual((asked.returncode, asked.stdout), (0, f"tessaly {self.version()}\n"))

        self.dpkg("--remove", "tessaly")
        self.assertEqual(self.paths(), before)
        self.dpkg("--install", self.package)
        self.assertNotEqual(self.paths(), before)
        self.dpkg("--purge", "tessaly")
        self.assertEqual(self.paths(), before)
        self.assertIsNone(self.status())


if __name__ == "__main__":
    skippable.main()
