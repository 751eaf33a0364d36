#!/usr/bin/python3
"""The rules of the house that no compiler checks: house_rules.py ROOT

Prints a line for each place that breaks a rule, "path:line: what to do instead", and exits with
status 1 when there is one. To add a rule, write a function that yields places and add it to RULES,
and a bad tree for it to house_rules_test.py.
"""

import os
import re
import sys

SOURCES = (".cpp", ".hpp")
TEXTS = SOURCES + (".txt", ".cmake", ".py", ".sh", ".md", ".ui")
LONGEST_FILE = 800
LONGEST_LINE = 100
VAGUE_WORDS = {"util", "utils", "utilities", "helper", "helpers", "misc", "common", "stuff"}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
PLATFORM_CONDITION = re.compile(r"^\s*#\s*(el)?if.*\b(__linux__|__APPLE__|_WIN32|Q_OS_\w+)")
SLEEP = re.compile(r"\b(sleep_for|sleep_until|sleep|usleep|nanosleep|msleep|qWait|qSleep)\s*\(")
# In two parts, so that this file may be searched for them too.
LEFT_OPEN = re.compile(r"\b(TO" r"DO|FIX" r"ME|XX" r"X)\b")


class Tree:
    """The project's files: their paths relative to the root, and their lines."""

    def __init__(self, root):
        self.root = root
        self.paths = []
        for folder, subfolders, files in os.walk(root):
            subfolders[:] = sorted(
                name
                for name in subfolders
                if name not in (".git", "__pycache__") and not name.startswith(("build", "cmake-"))
            )
            for name in sorted(files):
                self.paths.append(os.path.relpath(os.path.join(folder, name), root))
        self._lines = {}

    def with_ending(self, endings):
        # tests/data holds samples of other formats, which no rule is about.
        return [
            path
            for path in self.paths
            if path.endswith(endings) and not path.startswith("tests/data/")
        ]

    def lines(self, path):
        if path not in self._lines:
            with open(os.path.join(self.root, path), encoding="utf-8", errors="replace") as file:
                self._lines[path] = file.read().splitlines()
        return self._lines[path]

    def numbered(self, path):
        return enumerate(self.lines(path), start=1)

    def layers(self):
        """The table of cmake/Layers.cmake: {layer: folder} and {layer: {layers it may use}}."""
        path = "cmake/Layers.cmake"
        if path not in self.paths:
            return {}, {}
        text = "\n".join(line.split("#")[0] for line in self.lines(path))
        folders = dict(re.findall(r"set\(TESSALY_FOLDER_(\w+)\s+([\w/]+)\s*\)", text))
        edges = re.findall(r"set\(TESSALY_MAY_USE_(\w+)([\w\s]*)\)", text)
        return folders, {layer: set(used.split()) for layer, used in edges}

    def layer_of(self, path):
        """The layer that a file belongs to, or None.

        A layer may have folders inside its own, and another layer may lie in one of them, so the
        longest folder that holds the file decides.
        """
        folders, _ = self.layers()
        holding = [layer for layer, folder in folders.items() if path.startswith(folder + "/")]
        return max(holding, key=lambda layer: len(folders[layer]), default=None)

    def line_of_edges(self, layer):
        """Where cmake/Layers.cmake says what a layer may use."""
        begin = f"set(TESSALY_MAY_USE_{layer}"
        return next(
            (
                number
                for number, line in self.numbered("cmake/Layers.cmake")
                if re.match(re.escape(begin) + r"\b", line)
            ),
            1,
        )

    def own_includes(self, path):
        """The project's own headers that a file includes: line numbers and paths."""
        for number, line in self.numbered(path):
            found = INCLUDE.match(line)
            if found and found.group(1) == '"':
                yield number, found.group(2)

    def layer_using(self, path):
        """The layer whose edges a file has to keep to, or None.

        A program stands on top of all layers, wherever its main.cpp lies.
        """
        return None if os.path.basename(path) == "main.cpp" else self.layer_of(path)


def headers_are_guarded(tree):
    for path in tree.with_ending(".hpp"):
        if "#pragma once" not in tree.lines(path):
            yield path, 1, "begin the header with #pragma once"


def files_stay_short(tree):
    for path in tree.with_ending(SOURCES):
        length = len(tree.lines(path))
        if length > LONGEST_FILE:
            yield path, length, (
                f"{length} lines: split it along its responsibilities into files of at most "
                f"{LONGEST_FILE}"
            )


def lines_fit(tree):
    for path in tree.with_ending(SOURCES + (".txt", ".cmake", ".py", ".sh")):
        for number, line in tree.numbered(path):
            if len(line) > LONGEST_LINE:
                yield path, number, f"break the line: it has more than {LONGEST_LINE} columns"


def nothing_is_left_open(tree):
    for path in tree.with_ending(TEXTS):
        for number, line in tree.numbered(path):
            found = LEFT_OPEN.search(line)
            if found:
                yield path, number, f"do it now, and remove the {found.group()}"


def names_say_something(tree):
    for path in tree.paths:
        stem = os.path.splitext(path)[0]
        words = re.findall(r"[A-Z]?[a-z]+|[A-Z]+", stem)
        vague = VAGUE_WORDS.intersection(word.lower() for word in words)
        if vague and path.endswith(SOURCES):
            yield path, 1, f'name the file after what is in it, not "{sorted(vague)[0]}"'


def sources_have_headers(tree):
    for path in tree.with_ending(".cpp"):
        header = path[: -len(".cpp")] + ".hpp"
        if os.path.basename(path) == "main.cpp":
            continue
        if tree.layer_of(path) and header not in tree.paths:
            yield path, 1, f"declare what it defines in {header}"


def sources_include_their_header_first(tree):
    """Which proves that the header needs nothing before it."""
    for path in tree.with_ending(".cpp"):
        header = path[: -len(".cpp")] + ".hpp"
        if not tree.layer_of(path) or header not in tree.paths:
            continue
        for number, line in tree.numbered(path):
            found = INCLUDE.match(line)
            if found:
                if found.group(2) != header:
                    yield path, number, f'include "{header}" before anything else'
                break


def sources_are_built(tree):
    listed = {}  # folder with a CMakeLists.txt: the words in it
    for path in tree.paths:
        if os.path.basename(path) == "CMakeLists.txt":
            text = "\n".join(line.split("#")[0] for line in tree.lines(path))
            listed[os.path.dirname(path)] = set(re.split(r'[\s()"]+', text))
    for path in tree.with_ending(SOURCES):
        if path.endswith(".hpp") and not tree.layer_of(path):
            continue
        folder = os.path.dirname(path)
        while folder and folder not in listed:
            folder = os.path.dirname(folder)
        name = os.path.relpath(path, folder or ".")
        # A class is listed without an ending.
        if not {name, os.path.splitext(name)[0]} & listed.get(folder, set()):
            yield path, 1, f"list {name} in {os.path.join(folder, 'CMakeLists.txt')}"


def engine_has_no_qt(tree):
    for path in tree.with_ending(SOURCES):
        if not path.startswith("engine/"):
            continue
        for number, line in tree.numbered(path):
            found = INCLUDE.match(line)
            if found and re.match(r"Q[A-Zt]", found.group(2)):
                yield path, number, (
                    "the engine has no Qt: use the standard library, or do this in a layer above"
                )


def includes_follow_the_layers(tree):
    _, may_use = tree.layers()
    for path in tree.with_ending(SOURCES):
        layer = tree.layer_using(path)
        for number, included in tree.own_includes(path):
            used = tree.layer_of(included)
            if "/" not in included:
                if not included.startswith("ui_"):
                    yield path, number, (
                        f'write the path from the project\'s root: "folder/{included}"'
                    )
            elif layer and included.startswith(("tests/", "bench/")):
                yield path, number, f'"{included}" is for programs only: move the code to a layer'
            elif layer and used and used != layer and used not in may_use.get(layer, ()):
                allowed = " ".join(sorted(may_use.get(layer, ()))) or "none"
                yield path, number, (
                    f'layer "{layer}" may not use layer "{used}" (but: {allowed}): move the code '
                    f"down, or declare an interface here that {used} implements; see "
                    "cmake/Layers.cmake"
                )


def edges_are_used(tree):
    """An edge that nothing needs would let the next include cross it unseen."""
    _, may_use = tree.layers()
    used = {
        (tree.layer_using(path), tree.layer_of(included))
        for path in tree.with_ending(SOURCES)
        for _, included in tree.own_includes(path)
    }
    for layer, allowed in may_use.items():
        for other in sorted(allowed):
            if (layer, other) not in used:
                yield "cmake/Layers.cmake", tree.line_of_edges(layer), (
                    f'layer "{layer}" includes nothing of "{other}": take the edge out, here and '
                    "from USES in the layer's CMakeLists.txt"
                )


def platforms_are_folders(tree):
    for path in tree.with_ending(SOURCES):
        if path.startswith("platform/"):
            continue
        for number, line in tree.numbered(path):
            if PLATFORM_CONDITION.match(line):
                yield path, number, (
                    "no conditions on the system here: put an interface into platform/ and let "
                    "CMake choose the source"
                )


def bus_names_stay_in_the_platform(tree):
    for path in tree.with_ending(SOURCES):
        if path.startswith(("platform/linux/", "tests/")):
            continue
        for number, line in tree.numbered(path):
            if '"org.freedesktop.' in line:
                yield path, number, "keep names on the bus in platform/linux/, behind an interface"


def tests_do_not_sleep(tree):
    for path in tree.with_ending(SOURCES):
        if not path.startswith("tests/"):
            continue
        for number, line in tree.numbered(path):
            found = SLEEP.search(line.split("//")[0])
            if found:
                yield path, number, (
                    f"wait for what is to happen instead of {found.group(1)}(): a condition "
                    "variable, a latch or an injected clock; with Qt QTRY_* or QSignalSpy::wait"
                )


def readme_lists_the_packages(tree):
    setup, readme = os.path.join("tools", "setup"), "README.md"
    if setup not in tree.paths or readme not in tree.paths:
        return
    rows = re.findall(
        r"^([a-z0-9.+-]+) +(?:build|test|tour|bench|package|check|fuzz) +\S",
        "\n".join(tree.lines(setup)),
        re.MULTILINE,
    )
    text = "\n".join(tree.lines(readme))
    for package in sorted(set(rows)):
        if f"`{package}`" not in text:
            yield readme, 1, f"list the package `{package}`, which tools/setup installs"


RULES = (
    headers_are_guarded,
    files_stay_short,
    lines_fit,
    nothing_is_left_open,
    names_say_something,
    sources_have_headers,
    sources_include_their_header_first,
    sources_are_built,
    engine_has_no_qt,
    includes_follow_the_layers,
    edges_are_used,
    platforms_are_folders,
    bus_names_stay_in_the_platform,
    tests_do_not_sleep,
    readme_lists_the_packages,
)


def main(arguments):
    tree = Tree(arguments[1])
    if not tree.with_ending(SOURCES):
        print(f"{arguments[1]}: there are no sources here; name the project's root")
        return 1
    broken = sorted(place for rule in RULES for place in rule(tree))
    for path, number, advice in broken:
        print(f"{path}:{number}: {advice}")
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
