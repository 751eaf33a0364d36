"""A desktop that nobody sees: an X server, a window manager, a session bus and a home folder."""

import os
import shutil
import subprocess
import tempfile
import time

PATIENCE_SECONDS = 60
SCREEN = "1180x800x24"


def waited(what, condition):
    """Returns what the condition gives as soon as that is true. Raises when it never is."""
    deadline = time.monotonic() + PATIENCE_SECONDS
    while time.monotonic() < deadline:
        given = condition()
        if given:
            return given
        time.sleep(0.05)
    raise TimeoutError(f"waited in vain for {what}")


def window_names(environment, *search):
    """The titles of the visible windows that fit what xdotool is to search for."""
    found = subprocess.run(
        ("xdotool", "search", "--onlyvisible", *search, "getwindowname", "%@"),
        env=environment,
        capture_output=True,
        text=True,
        timeout=PATIENCE_SECONDS,
    )
    return found.stdout.splitlines()  # none when a window went while it searched


class VirtualDesktop:
    """Starts what a program needs, and ends all of it with close().

    Programs get `environment`, which holds nothing of the caller's that could lead them elsewhere.
    """

    def __init__(self):
        self.home = tempfile.mkdtemp(prefix="tessaly-desktop-")
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

    def close(self):
        for process in reversed(self.processes):
            process.terminate()
            try:
                process.wait(PATIENCE_SECONDS)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        shutil.rmtree(self.home, ignore_errors=True)

    def start(self, *arguments, **more):
        process = subprocess.Popen(arguments, env=self.environment, **more)
        self.processes.append(process)
        return process

    def open(self):
        """Starts the display with its window manager, and the bus."""
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
        ready = os.path.join(self.home, "run", "managed")
        self.start("openbox", "--startup", "touch " + ready, stderr=subprocess.DEVNULL)
        # It overlooks a window that is shown before it has taken over those that there are.
        waited("the window manager", lambda: os.path.exists(ready))
        bus = self.start(
            *("dbus-daemon", "--session", "--nofork", "--print-address"),
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
        )
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def open_program(self, program, **more):
        """Starts Tessaly and waits for its window."""
        process = self.start(program, **more)
        waited(
            "the window of Tessaly",
            lambda: window_names(self.environment, "--name", "^Tessaly$"),
        )
        return process

    def run(self, *arguments):
        """Runs a command and returns what it writes. Raises when it fails."""
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
        raise TimeoutError("the screen did not change, or did not come to rest")
