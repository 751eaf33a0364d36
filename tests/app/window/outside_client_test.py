#!/usr/bin/python3
"""Leads the program through its main job from outside: outside_client_test.py PROGRAM

It runs on a display of its own, with a window manager, a session bus, a notification service and a
file manager. The script starts itself once more there, as a client of the accessibility bus: that
one sees the program as a screen reader does, by roles, names, texts and actions.
"""

import importlib.util
import json
import os
import shutil
import subprocess
import sys
import tempfile

PROJECT = os.path.dirname(
    os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
)
sys.path.insert(0, os.path.join(PROJECT, "tools"))

from virtual_desktop import (  # noqa: E402
    PATIENCE_SECONDS,
    VirtualDesktop,
    waited,
    window_names,
)

SKIPPED = 77
AS_CLIENT = "--as-client"
LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
PROGRAMS = (
    *("Xvfb", "openbox", "xdotool", "dbus-daemon", "dunst", "dunstctl", "pcmanfm-qt", "gdbus"),
    LAUNCHER,
)
MODULES = ("gi", "pyatspi")
FILE_MANAGER = "org.freedesktop.FileManager1"
DISK = "Disk"
# Zeros that take no room on the disk: a scan goes by what files hold.
FILES = {
    "Movies/Films/long one.mkv": 4_000_000,
    "Movies/short one.mkv": 2_000_000,
    "notes.raw": 3_000_000,
    "Größe #1 100%.txt": 1_000_000,
}
ROWS = [
    "Movies, folder, 6.00 MB, 60%",
    "notes.raw, file, 3.00 MB, 30%",
    "Größe #1 100%.txt, file, 1.00 MB, 10%",
]
TOTAL = "10.00 MB"
ROWS_OF_MOVIES = ["Films, folder, 4.00 MB, 67%", "short one.mkv, file, 2.00 MB, 33%"]


class OutsideClient:
    """Sees and uses the program over the accessibility bus, in the environment of the desktop."""

    def __init__(self):
        import pyatspi
        from gi.repository import GLib

        self.atspi = pyatspi
        self.events = GLib.MainContext.default()
        self.error = GLib.Error
        self.disk = os.path.join(os.environ["HOME"], DISK)
        self.focused = None
        pyatspi.Registry.registerEventListener(self.remember_focus, "object:state-changed:focused")
        self.application = self.wait("the program on the bus", self.find_application)

    def remember_focus(self, event):
        if event.detail1:
            self.focused = event.source

    def wait(self, what, condition):
        def is_so():
            while self.events.iteration(False):
                pass
            try:
                return condition()
            except self.error:
                return None  # what it asked went away

        return waited(what, is_so)

    def find_application(self):
        there = self.atspi.Registry.getDesktop(0)
        return next((found for found in there if found and found.name == "tessaly"), None)

    def find(self, root, role, name):
        """The visible one of this role and name below root, or None."""
        for child in filter(None, root):
            is_it = (
                child.getRoleName() == role
                and child.name == name
                and child.getState().contains(self.atspi.STATE_SHOWING)
            )
            found = child if is_it else self.find(child, role, name)
            if found:
                return found
        return None

    def shown(self, role, name, root=None):
        return self.wait(
            f"the {role} {name!r}", lambda: self.find(root or self.application, role, name)
        )

    def do(self, accessible, name):
        action = accessible.queryAction()
        names = [action.getName(number) for number in range(action.nActions)]
        if name not in names or not action.doAction(names.index(name)):
            raise AssertionError(f"{accessible} does not do {name!r}, but {names}")

    def wait_for_rows(self, expected):
        def are_there():
            table = self.find(self.application, "list", "Items of the folder")
            return table and [row.name for row in filter(None, table)] == expected

        self.wait(f"the rows {expected}", are_there)

    def select(self, table, row):
        """Clicks into the middle of a row, which also gives its table the keyboard."""
        place = self.shown("list item", row, self.shown("list", table)).queryComponent()
        extents = place.getExtents(self.atspi.DESKTOP_COORDS)
        middle = (extents.x + extents.width // 2, extents.y + extents.height // 2)
        subprocess.run(("xdotool", "mousemove", *map(str, middle), "click", "1"), check=True)
        self.wait(f"the selection of {row}", lambda: self.is_selected(table, row))

    def is_selected(self, table, row):
        item = self.shown("list item", row, self.shown("list", table))
        return item.getState().contains(self.atspi.STATE_SELECTED)

    def press_key(self, name):
        subprocess.run(("xdotool", "key", "--clearmodifiers", name), check=True)

    def choose_page(self, name):
        self.do(self.shown("list item", name, self.shown("list", "Screens")), "Toggle")
        self.wait(f"the selection of {name}", lambda: self.is_selected("Screens", name))

    def choose_from_row_menu(self, title):
        """Opens the selected row's menu by its key, and chooses an item."""
        self.press_key("Menu")
        self.do(self.menu_item(title), "Press")

    def menu_item(self, title):
        """Goes to an item of the menu that is open, as the focus tells."""

        def is_focused():
            if self.focused is not None and self.focused.name == title:
                return True
            self.press_key("Down")
            return False

        self.wait(f"the menu item {title!r}", is_focused)
        return self.focused

    def scan(self):
        self.scan_disk()
        self.wait("the notification", self.is_notified)

        self.select("Items of the folder", ROWS[0])
        self.press_key("Return")
        self.wait_for_rows(ROWS_OF_MOVIES)
        self.shown("label", os.path.join(self.disk, "Movies"))

        self.select("Items of the folder", ROWS_OF_MOVIES[0])
        self.choose_from_row_menu("Show in File Manager")
        self.wait("the file manager's window", self.is_revealed)
        self.do(self.shown("push button", "Close"), "Press")

    def scan_disk(self):
        self.choose_page("Folder Scan")
        self.shown("label", "No folder scanned yet")
        self.do(self.shown("push button", "Scan"), "Press")
        dialog = self.shown("dialog", "Choose a Folder")
        path = self.shown("text", "Directory:", dialog)
        if not path.queryEditableText().setTextContents(self.disk):
            raise AssertionError("the path cannot be set in the folder dialog")
        self.do(self.shown("push button", "Scan", dialog), "Press")

        self.wait_for_rows(ROWS)
        self.shown("label", TOTAL)

    def start_again(self):
        """The last scan is there again, though its folder is not."""
        self.choose_page("Folder Scan")
        self.wait_for_rows(ROWS)
        self.shown("label", TOTAL)
        self.do(self.shown("push button", "Close"), "Press")

    def is_revealed(self):
        return window_names(os.environ, "--class", "pcmanfm-qt") == ["Movies"]

    def is_notified(self):
        # Its history holds what is no longer shown.
        subprocess.run(("dunstctl", "close-all"), check=True)
        told = json.loads(subprocess.check_output(("dunstctl", "history")))
        return any(
            (one["appname"]["data"], one["summary"]["data"]) == ("Tessaly", "Scan Completed")
            for one in told["data"][0]
        )


class DesktopForClients(VirtualDesktop):
    """A desktop with an accessibility bus, a notification service and a file manager."""

    def open(self):
        super().open()
        self.start(LAUNCHER, "--launch-immediately", stderr=subprocess.DEVNULL)
        self.start("dunst", stderr=subprocess.DEVNULL)
        self.start("pcmanfm-qt", "--daemon-mode", stderr=subprocess.DEVNULL)
        for name in ("org.a11y.Bus", "org.freedesktop.Notifications", FILE_MANAGER):
            self.run("gdbus", "wait", "--session", "--timeout", str(PATIENCE_SECONDS), name)
        self.run(
            *("gdbus", "call", "--session", "--dest", "org.a11y.Bus"),
            *("--object-path", "/org/a11y/bus"),
            *("--method", "org.freedesktop.DBus.Properties.Set"),
            *("org.a11y.Status", "IsEnabled", "<true>"),
        )

    def lead(self, program, part, script=__file__):
        """Opens the program, lets a client do a part of the job, and sees the program end.

        Returns what the program has written to its log.
        """
        with tempfile.TemporaryFile("w+") as log:
            process = self.open_program(program, stderr=log)
            subprocess.run(
                (sys.executable, "-B", script, AS_CLIENT, part), env=self.environment, check=True
            )
            status = process.wait(PATIENCE_SECONDS)
            log.seek(0)
            lines = log.read().splitlines()
        if status != 0:
            raise AssertionError(f"the program ended with status {status}: {lines}")
        return lines


def make_files(folder):
    for name, size in FILES.items():
        path = os.path.join(folder, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.truncate(size)


def missing():
    """What the test needs and the machine does not have."""
    programs = [name for name in PROGRAMS if not shutil.which(name)]
    return programs + [name for name in MODULES if not importlib.util.find_spec(name)]


def main(arguments):
    if arguments[1] == AS_CLIENT:
        getattr(OutsideClient(), arguments[2])()
        return 0
    if missing():
        print("not installed: " + ", ".join(missing()))
        return SKIPPED
    desktop = DesktopForClients()
    try:
        disk = os.path.join(desktop.home, DISK)
        make_files(disk)
        desktop.open()
        log = desktop.lead(arguments[1], "scan")
        if not any(line.endswith("name: Films") for line in log):
            raise AssertionError(f"what was shown in the file manager was not logged: {log}")
        shutil.rmtree(disk)
        desktop.lead(arguments[1], "start_again")
    finally:
        desktop.close()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
