#!/usr/bin/python3
"""Leads the program through its main job on a display of its own: tour.py PROGRAM FOLDER

Starts an X server, a window manager and a session bus that nobody else uses, and the program with a
home folder of its own. The program is driven by key presses and mouse clicks as the X server gives
them. A picture of each step is put into FOLDER, and its path is printed.
"""

import os
import shutil
import subprocess
import sys

from virtual_desktop import VirtualDesktop, waited, window_names

FILES = {
    "Movies/Film one.mkv": 214_380_000_000,
    "Library/Caches/cache.db": 88_120_000_000,
    "Projects/archive.tar": 41_600_000_000,
    "disk-image-backup.img": 32_000_000_000,
    "Pictures/holiday.raw": 12_470_000_000,
    "Downloads/installer.bin": 8_930_000_000,
    ".Trash/old": 2_100_000_000,
    "Music/album.flac": 905_110_000,
    "Public/empty": 0,
}
NOTES = "Buy milk.\nCall Ada about the drive.\n" * 20


class Tour(VirtualDesktop):
    def __init__(self, folder):
        super().__init__()
        self.folder = folder
        self.count = 0
        os.makedirs(folder, exist_ok=True)

    def step(self, name, *actions, window=None):
        """Does something, waits for what comes of it, and takes a picture.

        Where that is a window of its own, it may come after the screen has been at rest.
        """
        self.close_notifications()
        before = self.screen()
        for action in actions:
            self.run("xdotool", *action)
        if window:
            waited(
                "the window " + window,
                lambda: window_names(self.environment, "--name", window),
            )
        self.settle(before if actions else None)
        self.count += 1
        path = os.path.join(self.folder, f"{self.count:02}-{name}.png")
        self.run("import", "-window", "root", path)
        print(path)

    def close_notifications(self):
        """Those of earlier steps, which would lie over the window."""
        if shutil.which("dunstctl"):
            subprocess.run(["dunstctl", "close-all"], env=self.environment, capture_output=True)

    def window_place(self):
        output = self.run(
            "xdotool", "search", "--onlyvisible", "--name", "^Tessaly$", "getwindowgeometry",
            "--shell",
        ).decode()
        values = dict(line.split("=") for line in output.split() if "=" in line)
        return int(values["X"]), int(values["Y"])

    def click(self, x, y):
        left, top = self.window_place()
        return ("mousemove", str(left + x), str(top + y), "click", "1")


def key(name):
    return ("key", "--clearmodifiers", name)


def make_home(home):
    data = os.path.join(home, "Disk")
    for name, size in FILES.items():
        path = os.path.join(data, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.truncate(size)
    with open(os.path.join(data, "notes.txt"), "w", encoding="utf-8") as file:
        file.write(NOTES)
    return data


def main(arguments):
    program, folder = arguments[1:]
    tour = Tour(folder)
    try:
        data = make_home(tour.home)
        tour.open()
        process = tour.open_program(program)
        tour.step("drives")
        tour.step("folder-scan-empty", key("ctrl+3"))
        tour.step("choose", key("ctrl+o"), window="Choose a Folder")
        tour.step("result", ("type", data), key("Return"))
        tour.step("sorted-by-name", key("ctrl+shift+s"))
        tour.step("sorted-by-size", key("ctrl+shift+s"))
        tour.step("inside-a-folder", tour.click(316, 121))
        tour.step("preview", key("alt+Left"), key("End"), key("Up"), key("Return"))
        tour.step("back", key("Escape"))
        tour.step("row-menu", key("Menu"))
        tour.step("home-setup", key("Escape"), key("ctrl+2"))
        tour.step("home-choose", key("Return"), key("space"), window="Choose a Folder")
        tour.step("home-granted", ("type", tour.home), key("Return"))
        tour.step("home-result", key("ctrl+r"))
        tour.step("history", key("ctrl+4"))
        tour.step("program-menu", key("F10"))
        tour.step("preferences", key("Escape"), key("ctrl+comma"))
        tour.step("full-screen", key("Escape"), key("F11"))
        tour.step("window-again", key("Escape"))
        process.terminate()
        process.wait()
        tour.open_program(program)
        tour.step("next-start", key("ctrl+3"))
        tour.step("next-start-home", key("ctrl+2"))
    finally:
        tour.close()


if __name__ == "__main__":
    main(sys.argv)
