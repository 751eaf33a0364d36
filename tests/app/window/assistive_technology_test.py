#!/usr/bin/python3
"""What assistive technology sees of the program: assistive_technology_test.py PROGRAM

As outside_client_test.py, on a desktop of its own: preferences that are switched over the
accessibility bus, what cannot be used below a sheet, roles, actions of rows, and what is spoken.
Also that the window comes back where it was when the program was killed in full screen.
"""

import os
import plistlib
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from outside_client_test import (  # noqa: E402
    AS_CLIENT,
    DISK,
    PATIENCE_SECONDS,
    ROWS,
    ROWS_OF_MOVIES,
    SKIPPED,
    DesktopForClients,
    OutsideClient,
    make_files,
    missing,
    waited,
)

FRAME_KEY = "frameForNonFullScreenMode"
SHEET_GROUPS = ["Show hidden items", "Show files", "Notifications", "Warning colours"]


class Client(OutsideClient):
    def __init__(self):
        super().__init__()
        self.spoken = []
        self.atspi.Registry.registerEventListener(
            self.remember_notice, "object:state-changed:showing"
        )

    def remember_notice(self, event):
        if event.detail1 and event.source.getRoleName() == "notification":
            self.spoken.append(event.source.name)

    def actions_of(self, accessible):
        try:
            action = accessible.queryAction()
        except NotImplementedError:
            return []
        return [action.getName(number) for number in range(action.nActions)]

    def expect(self, what, found, expected):
        if found != expected:
            raise AssertionError(f"{what}: {found!r} instead of {expected!r}")

    def all_below(self, root):
        for child in filter(None, root):
            yield child
            yield from self.all_below(child)

    def has(self, accessible, state):
        return accessible.getState().contains(state)

    # The preferences

    def preferences(self):
        history = self.shown("list item", "History", self.shown("list", "Screens"))
        refresh = self.shown("push button", "Refresh")
        self.press_key("ctrl+comma")
        sheet = self.shown("dialog", "Preferences")
        self.expect("modal", self.has(sheet, self.atspi.STATE_MODAL), True)
        for title in SHEET_GROUPS:
            group = self.shown("panel", title, sheet)
            labels = [
                relation.getTarget(0)
                for relation in group.getRelationSet()
                if relation.getRelationType() == self.atspi.RELATION_LABELLED_BY
            ]
            self.expect("labels", [label.name for label in labels], [title])
        self.expect_nothing_below_can_be_used(history, refresh)
        self.switch(sheet)
        self.do(self.shown("push button", "Close", sheet), "Press")
        self.wait("the end of the sheet", lambda: self.has(refresh, self.atspi.STATE_SENSITIVE))

        self.press_key("ctrl+comma")
        sheet = self.shown("dialog", "Preferences")
        self.expect_checked(sheet, "check box", "Notify when a scan ends", False)
        hidden = self.shown("panel", "Show hidden items", sheet)
        self.expect_checked(hidden, "radio button", "Larger than 500 KB", True)
        self.do(self.shown("push button", "Close", sheet), "Press")
        self.wait("the end of the sheet", lambda: self.has(refresh, self.atspi.STATE_SENSITIVE))
        self.quit()

    def switch(self, sheet):
        sound = self.shown("check box", "Play a sound with the notification", sheet)
        self.do(self.shown("check box", "Notify when a scan ends", sheet), "Toggle")
        self.wait(
            "the end of its sound", lambda: not self.has(sound, self.atspi.STATE_SENSITIVE)
        )
        hidden = self.shown("panel", "Show hidden items", sheet)
        self.do(self.shown("radio button", "Larger than 500 KB", hidden), "Toggle")

    def expect_checked(self, root, role, name, is_checked):
        control = self.shown(role, name, root)
        self.expect(name, self.has(control, self.atspi.STATE_CHECKED), is_checked)

    def expect_nothing_below_can_be_used(self, history, refresh):
        below = next(
            child
            for child in self.all_below(self.application)
            if child.getRoleName() == "split pane"
        )
        for accessible in self.all_below(below):
            if accessible.getRoleName() == "progress bar":
                continue  # it only shows, whatever it offers
            self.expect(f"actions of {accessible}", self.actions_of(accessible), [])
            self.expect(
                f"{accessible} is sensitive",
                self.has(accessible, self.atspi.STATE_SENSITIVE),
                False,
            )
        # What a client remembers from before does nothing either.
        for accessible in (history, refresh):
            try:
                accessible.queryAction().doAction(0)
            except (NotImplementedError, self.error):
                pass
        self.expect("the page", self.is_selected("Screens", "Drives"), True)

    def quit(self):
        frame = self.application.getChildAtIndex(0)
        title_bar = [child for child in frame if child.name == "Close"]
        self.do(title_bar[0], "Press")

    # Rows

    def rows(self):
        self.shown("frame", "Tessaly")
        self.scan_disk()
        self.expect(
            "spoken",
            self.wait("the rows to be spoken", lambda: self.last_spoken_with(ROWS[0])),
            "3 items: " + "; ".join(ROWS),
        )
        table = self.shown("list", "Items of the folder")
        folder = self.shown("list item", ROWS[0], table)
        self.expect("actions", self.actions_of(folder)[:2], ["Press", "ShowMenu"])
        self.do(folder, "Press")
        self.wait_for_rows(ROWS_OF_MOVIES)
        self.expect(
            "spoken",
            self.wait("the next rows", lambda: self.last_spoken_with(ROWS_OF_MOVIES[0])),
            "2 items: " + "; ".join(ROWS_OF_MOVIES),
        )
        self.shown("label", os.path.join(self.disk, "Movies"))
        self.do(self.shown("list item", ROWS_OF_MOVIES[1], table), "ShowMenu")
        self.menu_item("Show in File Manager")
        self.press_key("Escape")
        self.choose_page("History")
        self.wait("the scan to be spoken", lambda: self.last_spoken_with("1 item: " + self.disk))
        self.quit()

    def last_spoken_with(self, text):
        return next((notice for notice in reversed(self.spoken) if text in notice), None)


class Desktop(DesktopForClients):
    def settings(self):
        try:
            path = os.path.join(self.home, ".config", "tessaly", "settings.plist")
            with open(path, "rb") as file:
                return plistlib.load(file)
        except FileNotFoundError:
            return {}

    def window_geometry(self):
        """Of the program's window, once it does not change any more."""
        seen = []

        def is_at_rest():
            found = self.run(
                *("xdotool", "search", "--onlyvisible", "--name", "^Tessaly$"),
                *("getwindowgeometry", "--shell"),
            ).decode()
            seen.append([line for line in found.splitlines() if not line.startswith("WINDOW")])
            return len(seen) > 4 and all(one == seen[-1] for one in seen[-4:])

        waited("the window to come to rest", is_at_rest)
        return seen[-1]

    def expect_frame_to_survive_a_kill(self, program):
        process = self.open_program(program)
        waited("its content", lambda: self.settings().get("showNotificationPreference") is not None)
        before = self.window_geometry()
        window = self.run("xdotool", "search", "--onlyvisible", "--name", "^Tessaly$").split()[0]
        self.run("xdotool", "windowfocus", window)
        self.enter_full_screen()
        waited("full screen", lambda: "WIDTH=1180" in self.window_geometry())
        process.kill()
        process.wait(PATIENCE_SECONDS)
        if FRAME_KEY not in self.settings():
            raise AssertionError("the frame is not in the settings")
        process = self.open_program(program)
        waited("the frame", lambda: self.window_geometry() == before)
        process.terminate()
        process.wait(PATIENCE_SECONDS)

    def enter_full_screen(self):
        self.run("xdotool", "key", "F11")
        waited("the frame to be kept", lambda: FRAME_KEY in self.settings())


def main(arguments):
    if arguments[1] == AS_CLIENT:
        getattr(Client(), arguments[2])()
        return 0
    if missing():
        print("not installed: " + ", ".join(missing()))
        return SKIPPED
    desktop = Desktop()
    try:
        make_files(os.path.join(desktop.home, DISK))
        desktop.open()
        desktop.lead(arguments[1], "preferences", __file__)
        stored = desktop.settings()
        for key, value in (("showNotificationPreference", 0), ("hiddenItemPreference", 2)):
            if stored[key] != value:
                raise AssertionError(f"{key} is {stored[key]} in the settings")
        desktop.lead(arguments[1], "rows", __file__)
        desktop.expect_frame_to_survive_a_kill(arguments[1])
    finally:
        desktop.close()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
