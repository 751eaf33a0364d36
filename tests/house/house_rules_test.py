#!/usr/bin/python3
"""Proves that every house rule lets a good tree pass and refuses a bad one."""

import contextlib
import io
import os
import tempfile
import unittest

import house_rules

LAYERS = """
set(TESSALY_LAYERS engine history window)
set(TESSALY_FOLDER_engine engine)
set(TESSALY_FOLDER_history history)
set(TESSALY_FOLDER_window app/window)
set(TESSALY_MAY_USE_engine)
set(TESSALY_MAY_USE_history engine) # a remark
set(TESSALY_MAY_USE_window
    engine history)
"""

GOOD = {
    "cmake/Layers.cmake": LAYERS,
    "engine/CMakeLists.txt": "tessaly_library(engine SOURCES Foo.cpp HEADERS Foo.hpp)\n",
    "engine/Foo.hpp": "#pragma once\n\n#include <string>\n",
    "engine/Foo.cpp": '#include "engine/Foo.hpp"\n\n#include <queue>\n',
    "history/CMakeLists.txt": "tessaly_library(history SOURCES Bar.cpp HEADERS Bar.hpp)\n",
    "history/Bar.hpp": '#pragma once\n\n#include "engine/Foo.hpp"\n',
    "history/Bar.cpp": '#include "history/Bar.hpp"\n\n#include <QString>\n',
    "app/window/CMakeLists.txt": "tessaly_library(window HEADERS Main.hpp title/Bar.hpp)\n",
    "app/window/Main.hpp": '#pragma once\n#include "engine/Foo.hpp"\n#include "history/Bar.hpp"\n',
    "app/window/title/Bar.hpp": '#pragma once\n\n#include "app/window/Main.hpp"\n',
    "tests/CMakeLists.txt": "tessaly_tests(engine_tests SOURCES engine/FooTest.cpp)\n",
    "tests/engine/FooTest.cpp": '#include "engine/Foo.hpp"\n// sleep() is not called here\n',
    "tests/data/Odd.cpp": "#include <QString> // a sample\n",
    "build/release/Generated.cpp": "\n",
}


class HouseRulesTest(unittest.TestCase):
    def check(self, changes):
        """The status and output of the rules on the good tree with these changes made to it."""
        with tempfile.TemporaryDirectory() as root:
            for path, text in {**GOOD, **changes}.items():
                if text is None:
                    continue
                os.makedirs(os.path.dirname(os.path.join(root, path)), exist_ok=True)
                with open(os.path.join(root, path), "w", encoding="utf-8") as file:
                    file.write(text)
            output = io.StringIO()
            with contextlib.redirect_stdout(output):
                status = house_rules.main(["house_rules.py", root])
            return status, output.getvalue()

    def refuses(self, changes, message):
        status, output = self.check(changes)
        self.assertEqual(status, 1, output)
        self.assertIn(message, output)
        self.assertEqual(len(output.splitlines()), 1, output)

    def test_a_good_tree_passes(self):
        self.assertEqual(self.check({}), (0, ""))

    def test_a_tree_without_sources_is_a_mistake(self):
        with tempfile.TemporaryDirectory() as root:
            with contextlib.redirect_stdout(io.StringIO()):
                self.assertEqual(house_rules.main(["house_rules.py", root]), 1)

    def test_a_header_without_guard(self):
        self.refuses({"engine/Foo.hpp": "\n"}, "engine/Foo.hpp:1: begin the header with #pragma")

    def test_a_file_that_is_too_long(self):
        self.refuses({"engine/Foo.cpp": "\n" * 801}, "engine/Foo.cpp:801: 801 lines: split it")

    def test_a_line_that_is_too_long(self):
        self.refuses({"engine/Foo.cpp": "\n//" + "x" * 99}, "engine/Foo.cpp:2: break the line")

    def test_work_left_open(self):
        self.refuses({"engine/Foo.cpp": "// TO" "DO: later\n"}, "engine/Foo.cpp:1: do it now")

    def test_a_name_that_says_nothing(self):
        self.refuses({"tests/engine/TreeHelpers.hpp": "#pragma once\n"}, "name the file after")

    def test_a_folder_name_that_says_nothing(self):
        self.refuses({"tests/utils/Tree.hpp": "#pragma once\n"}, "name the file after")

    def test_a_source_without_header(self):
        self.refuses({"engine/Foo.hpp": None}, "declare what it defines in engine/Foo.hpp")

    def test_a_source_that_includes_something_before_its_header(self):
        self.refuses(
            {"engine/Foo.cpp": '#include <vector>\n#include "engine/Foo.hpp"\n'},
            'engine/Foo.cpp:1: include "engine/Foo.hpp" before anything else',
        )

    def test_a_source_that_is_not_built(self):
        self.refuses(
            {"tests/engine/BarTest.cpp": "\n"},
            "tests/engine/BarTest.cpp:1: list engine/BarTest.cpp in tests/CMakeLists.txt",
        )

    def test_a_source_that_is_listed_only_in_a_remark(self):
        self.refuses(
            {"tests/CMakeLists.txt": "# engine/FooTest.cpp\n"},
            "list engine/FooTest.cpp in tests/CMakeLists.txt",
        )

    def test_a_header_that_is_not_checked(self):
        self.refuses(
            {"engine/Extra.hpp": "#pragma once\n"}, "list Extra.hpp in engine/CMakeLists.txt"
        )

    def test_qt_in_the_engine(self):
        for header in ("QString", "QtCore/QString", "QtGlobal"):
            text = f"#pragma once\n#include <{header}>\n"
            self.refuses({"engine/Foo.hpp": text}, "the engine has no Qt")

    def test_an_include_against_the_layers(self):
        self.refuses(
            {
                "history/Bar.hpp": "#pragma once\n"
                '#include "app/window/Main.hpp"\n#include "engine/Foo.hpp"\n'
            },
            'history/Bar.hpp:2: layer "history" may not use layer "window" (but: engine)',
        )

    def test_an_include_against_the_layers_in_a_folder_of_a_layer(self):
        bad = '#include "app/window/title/Bar.hpp"\n'
        self.refuses(
            {
                "engine/CMakeLists.txt": "tessaly_library(engine HEADERS Foo.hpp tree/Bad.hpp)\n",
                "engine/tree/Bad.hpp": "#pragma once\n" + bad,
                "engine/Foo.cpp": None,
            },
            'engine/tree/Bad.hpp:2: layer "engine" may not use layer "window" (but: none)',
        )

    def test_a_layer_inside_the_folder_of_another_is_one_of_its_own(self):
        layers = LAYERS.replace(
            "set(TESSALY_MAY_USE_window",
            "set(TESSALY_FOLDER_scan engine/scan)\nset(TESSALY_MAY_USE_scan engine)\n"
            "set(TESSALY_MAY_USE_window",
        )
        scan = {
            "cmake/Layers.cmake": layers,
            "engine/scan/CMakeLists.txt": "tessaly_library(scan HEADERS Walk.hpp)\n",
            "engine/scan/Walk.hpp": '#pragma once\n#include "engine/Foo.hpp"\n',
        }
        self.assertEqual(self.check(scan), (0, ""))
        self.refuses(
            {**scan, "engine/Foo.hpp": '#pragma once\n#include "engine/scan/Walk.hpp"\n'},
            'engine/Foo.hpp:2: layer "engine" may not use layer "scan" (but: none)',
        )

    def test_an_edge_that_nothing_uses(self):
        self.refuses(
            {"app/window/Main.hpp": '#pragma once\n#include "history/Bar.hpp"\n'},
            'cmake/Layers.cmake:8: layer "window" includes nothing of "engine": take the edge out',
        )

    def test_an_include_of_test_code_in_a_layer(self):
        text = '#pragma once\n#include "tests/fakes/Foo.hpp"\n'
        self.refuses({"engine/Foo.hpp": text}, "is for programs only")

    def test_an_include_that_does_not_start_at_the_root(self):
        text = '#pragma once\n#include "Foo.hpp"\n'
        self.refuses({"engine/Foo.hpp": text}, '"folder/Foo.hpp"')

    def test_a_condition_on_the_system(self):
        self.refuses({"engine/Foo.cpp": "#ifdef __linux__\n"}, "no conditions on the system here")
        self.refuses({"history/Bar.cpp": "#if defined(Q_OS_WIN)\n"}, "no conditions on the system")

    def test_a_bus_name_outside_the_platform(self):
        self.refuses(
            {"history/Bar.cpp": 'auto name = "org.freedesktop.' 'UDisks2";\n'},
            "keep names on the bus in platform/linux/",
        )

    def test_a_test_that_sleeps(self):
        for call in ("std::this_thread::sleep_for(1s)", "usleep(5)", "QTest::qWait(10)"):
            self.refuses(
                {"tests/engine/FooTest.cpp": f"{call};\n"}, "wait for what is to happen instead"
            )

    def test_a_package_that_the_readme_does_not_list(self):
        changes = {
            "tools/setup": "packages='\ng++  build  compiles\ncmake  build  configures\n'\n",
            "README.md": "`g++`\n",
        }
        self.refuses(changes, "list the package `cmake`")


if __name__ == "__main__":
    unittest.main()
