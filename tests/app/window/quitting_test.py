#!/usr/bin/python3
"""Ends the program in every way there is, with the preview panel open: quitting_test.py PROGRAM

Each way has a process of its own, on a display of its own with a window manager, a session bus and
a session manager.
"""

import os
import shutil
import signal
import subprocess
import sys

PROJECT = os.path.dirname(
    os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
)
sys.path.insert(0, os.path.join(PROJECT, "tools"))

from session_manager import SessionManager  # noqa: E402
from virtual_desktop import VirtualDesktop, waited, window_names  # noqa: E402

SKIPPED = 77
PROGRAMS = ("Xvfb", "openbox", "xdotool", "dbus-daemon")
MAIN = "^Tessaly$"
PREVIEW = "^Preview"


class QuittingDesktop(VirtualDesktop):
    """The program with its preview panel open, and what its user and the desktop do to it."""

    def __init__(self, program):
        super().__init__()
        self.program = program
        self.manager = SessionManager()
        self.process = None

    def open(self):
        super().open()
        # For the program alone: a window manager would wait for it right away.
        self.environment["SESSION_MANAGER"] = self.manager.address

    def wait(self, what, condition):
        def is_so():
            self.manager.pump()
            return condition()

        return waited(what, is_so)

    def shown(self, name):
        return window_names(self.environment, "--name", name)

    def activate(self, name):
        search = ("xdotool", "search", "--onlyvisible", "--name", name, "windowactivate")

        def is_active():
            subprocess.run(search, env=self.environment, stderr=subprocess.DEVNULL)
            active = subprocess.run(
                ("xdotool", "getactivewindow", "getwindowname"),
                env=self.environment,
                capture_output=True,
                text=True,
            )
            return active.stdout.strip() in self.shown(name)

        self.wait(f"the keyboard in {name}", is_active)

    def press(self, *keys):
        self.run("xdotool", "key", "--clearmodifiers", *keys)

    def open_preview(self):
        # A first start: later ones ask the user to rate the program.
        shutil.rmtree(os.path.join(self.home, ".config"), ignore_errors=True)
        clients = len(self.manager.clients)
        self.process = self.start(self.program)
        self.wait("the session's new client", lambda: len(self.manager.clients) > clients)
        self.wait("the window", lambda: self.shown(MAIN))
        self.activate(MAIN)
        self.press("space")  # in the sidebar, which has the keyboard at first
        self.wait("the preview panel", lambda: self.shown(PREVIEW))
        self.activate(PREVIEW)

    # The ways to end the program.

    def key_in_the_preview(self):
        self.press("ctrl+q")

    def key_in_the_window(self):
        self.activate(MAIN)
        self.press("ctrl+q")

    def menu_item(self):
        self.activate(MAIN)
        self.press("F10")
        self.press("q")

    def closing_the_window(self):
        self.activate(MAIN)
        self.press("alt+F4")

    def terminating_signal(self):
        self.process.send_signal(signal.SIGTERM)

    def removing_the_home_folder(self):
        self.activate(MAIN)
        self.press("F10")
        self.press("v")

        def has_confirmed():
            self.press("Return")  # once the message is there, "ok" has the keyboard
            return self.process.poll() is not None

        self.wait("the end after the message", has_confirmed)

    def log_out(self):
        self.manager.log_out()

    def expect_end(self, way):
        def has_ended():
            return self.process.poll() is not None

        try:
            self.wait(f"the end by {way}", has_ended)
        except TimeoutError:
            self.process.kill()
            raise
        if self.process.returncode != 0:
            raise AssertionError(f"{way}: status {self.process.returncode}")


def missing():
    """What the test needs and the machine does not have."""
    return [name for name in PROGRAMS if not shutil.which(name)]


def main(arguments):
    if missing():
        print("not installed: " + ", ".join(missing()))
        return SKIPPED
    desktop = QuittingDesktop(arguments[1])
    ways = (
        *(desktop.key_in_the_preview, desktop.key_in_the_window, desktop.menu_item),
        *(desktop.closing_the_window, desktop.removing_the_home_folder),
        # Windows are asked to close in an order that differs from process to process.
        *(desktop.terminating_signal,) * 3,
        desktop.log_out,
    )
    try:
        desktop.open()
        for way in ways:
            desktop.open_preview()
            way()
            desktop.expect_end(way.__name__)
    finally:
        desktop.close()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
