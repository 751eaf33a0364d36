#!/usr/bin/python3
"""Proves what tools/setup does, with a package system made of scripts in place of the real one."""

import os
import re
import subprocess
import tempfile
import unittest

PROJECT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SETUP = os.path.join(PROJECT, "tools", "setup")

# Knows the packages listed in the file "installed"; like the real one it fails for any other.
DPKG_QUERY = """#!/bin/bash
for package in "$@"; do
    case $package in -*) continue ;; esac
    [[ $package == *'$'* ]] && continue
    if grep -qxF "$package" "$FAKE/installed"; then
        echo "$package installed"
    elif [ "$package" = cmake ]; then
        echo "cmake config-files"
    else
        echo "no packages found matching $package" >&2
        status=1
    fi
done
exit ${status-0}
"""
APT_GET = """#!/bin/bash
echo "apt-get $*" >>"$FAKE/calls"
case " $* " in *" install "*) exit "$(cat "$FAKE/apt_status")" ;; esac
"""
SUDO = """#!/bin/bash
echo sudo >>"$FAKE/calls"
exec "$@"
"""


def packages(group):
    """The packages that tools/setup lists for a group."""
    with open(SETUP, encoding="utf-8") as file:
        return set(re.findall(rf"^(\S+) +{group} +\S", file.read(), re.MULTILINE))


class SetupTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        for name in ("bash", "cat", "env", "grep", "mktemp", "rm", "sort"):
            os.symlink(f"/usr/bin/{name}", os.path.join(self.folder, name))
        self.write("dpkg-query", DPKG_QUERY)
        self.write("apt-get", APT_GET)
        self.write("apt_status", "0")
        self.write("calls", "")
        self.installed(*packages("build"))
        self.user(0)

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(path, 0o755)

    def installed(self, *packages):
        self.write("installed", "".join(f"{package}\n" for package in packages))

    def user(self, number):
        self.write("id", f"#!/bin/bash\necho {number}\n")

    def setup(self, *groups):
        environment = {"PATH": self.folder, "FAKE": self.folder}
        return subprocess.run(
            ["/bin/bash", SETUP, *groups],
            env=environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            check=False,
        )

    def calls(self):
        with open(os.path.join(self.folder, "calls"), encoding="utf-8") as file:
            return file.read().splitlines()

    def test_it_says_and_does_nothing_when_nothing_is_missing(self):
        result = self.setup("build")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        self.assertEqual(self.calls(), [])

    def test_it_installs_exactly_what_is_missing_after_an_update(self):
        missing = {"cmake", "libbenchmark-dev", "ninja-build"}
        self.assertLessEqual(missing, packages("build") | packages("test"))
        self.installed(*(packages("build") | packages("test")) - missing)
        result = self.setup("build", "test")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(len(self.calls()), 2)
        self.assertTrue(self.calls()[0].endswith(" update"), self.calls())
        self.assertTrue(
            self.calls()[1].endswith(
                " install --yes --no-install-recommends cmake libbenchmark-dev ninja-build"
            ),
            self.calls(),
        )
        self.assertEqual(result.stdout, "")
        self.assertRegex(result.stderr, r"ninja-build +runs the build")

    def test_it_asks_sudo_when_not_root(self):
        self.user(1000)
        self.installed(*packages("build") - {"ninja-build"})
        self.write("sudo", SUDO)
        result = self.setup("build")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.calls()[0], "sudo")
        self.assertTrue(self.calls()[3].endswith(" ninja-build"), self.calls())

    def test_it_names_the_packages_when_it_may_not_install(self):
        self.user(1000)
        self.installed(*packages("build") - {"ninja-build"})
        result = self.setup("build")
        self.assertEqual(result.returncode, 1)
        self.assertIn("apt-get install --no-install-recommends ninja-build", result.stderr)
        self.assertEqual(self.calls(), [])

    def test_it_fails_when_the_installation_does(self):
        self.installed(*packages("build") - {"ninja-build"})
        self.write("apt_status", "100")
        result = self.setup("build")
        self.assertEqual(result.returncode, 1)
        self.assertIn("could not install: ninja-build", result.stderr)

    def test_it_refuses_an_unknown_group(self):
        result = self.setup("kitchen")
        self.assertEqual(result.returncode, 2)
        self.assertIn('there is no group "kitchen"', result.stderr)


if __name__ == "__main__":
    unittest.main()
