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
import tempfile
import time

PATIENCE_SECONDS = 60
SCREEN = "1180x800x24"

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


class Tour:
    def __init__(self, program, folder):
        self.program = program
        self.folder = folder
        self.count = 0
        self.home = tempfile.mkdtemp(prefix="tessaly-tour-")
        self.processes = []
        self.environment = {
            "HOME": self.home,
            "LANG": "C.UTF-8",
            "PATH": os.environ.get("PATH", "/usr/bin:/bin"),
            "QT_QPA_PLATFORM": "xcb",
            "XDG_RUNTIME_DIR": os.path.join(self.home, "run"),
        }
        for name in ("ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"):
            if name in os.environ:
                self.environment[name] = os.environ[name]
        os.mkdir(self.environment["XDG_RUNTIME_DIR"], 0o700)
        os.makedirs(folder, exist_ok=True)

    def close(self):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()
        shutil.rmtree(self.home, ignore_errors=True)

    def start(self, *arguments, **more):
        process = subprocess.Popen(arguments, env=self.environment, **more)
        self.processes.append(process)
        return process

    def open_display(self):
        reading, writing = os.pipe()
        self.start(
            *("Xvfb", "-displayfd", str(writing), "-screen", "0", SCREEN),
            *("-nolisten", "tcp", "-noreset"),
            pass_fds=(writing,),
            stderr=subprocess.DEVNULL,
        )
        os.close(writing)
        with os.fdopen(reading) as number:
            self.environment["DISPLAY"] = ":" + number.readline().strip()
        self.start("openbox", stderr=subprocess.DEVNULL)
        bus = self.start(
            *("dbus-daemon", "--session", "--nofork", "--print-address"),
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
        )
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def open_program(self):
        program = self.start(self.program)
        self.run("xdotool", "search", "--sync", "--onlyvisible", "--name", "^Tessaly$")
        return program

    def run(self, *arguments):
        return subprocess.run(
            arguments,
            env=self.environment,
            check=True,
            capture_output=True,
            timeout=PATIENCE_SECONDS,
        ).stdout

    def screen(self):
        return self.run("import", "-window", "root", "rgb:-")

    def settle(self, before=None):
        """Waits until the screen shows something else than before, and has come to rest."""
        deadline = time.monotonic() + PATIENCE_SECONDS
        shown = self.screen()
        while time.monotonic() < deadline:
            time.sleep(0.25)
            now = self.screen()
            if now == shown and now != before:
                return now
            shown = now
        raise TimeoutError(f"nothing happened after step {self.count}")

    def step(self, name, *actions):
        """Does something, waits for what comes of it, and takes a picture."""
        before = self.screen()
        for action in actions:
            self.run("xdotool", *action)
        self.settle(before if actions else None)
        self.count += 1
        path = os.path.join(self.folder, f"{self.count:02}-{name}.png")
        self.run("import", "-window", "root", path)
        print(path)

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
    tour = Tour(program, folder)
    try:
        data = make_home(tour.home)
        tour.open_display()
        process = tour.open_program()
        tour.step("start")
        tour.step("folder-scan-empty", tour.click(100, 174))
        tour.step("choose", key("ctrl+o"))
        tour.step("result", ("type", data), key("Return"))
        tour.step("sorted-by-name", tour.click(312, 676))
        tour.step("sorted-by-size", tour.click(312, 676))
        tour.step("inside-a-folder", tour.click(316, 121))
        tour.step("preview", key("alt+Left"), key("End"), key("Up"), key("Return"))
        tour.step("back", key("Escape"))
        tour.step("menu", key("Menu"))
        tour.step("menu-closed", key("Escape"))
        process.terminate()
        process.wait()
        tour.open_program()
        tour.step("next-start", key("ctrl+3"))
    finally:
        tour.close()


if __name__ == "__main__":
    main(sys.argv)
