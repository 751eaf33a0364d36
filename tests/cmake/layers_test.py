#!/usr/bin/python3
"""Proves that cmake/Layers.cmake lets a right edge pass and stops the configure step at others."""

import os
import subprocess
import tempfile
import unittest

PROJECT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

# Nothing is compiled here, so no compiler is looked for.
PREPARED = f"""
cmake_minimum_required(VERSION 3.25)
project(layers LANGUAGES NONE)
list(APPEND CMAKE_MODULE_PATH "{PROJECT}/cmake")
include(Layers)
function(tessaly_warnings target)
endfunction()
function(tessaly_share_precompiled target)
endfunction()
function(add_library name kind)
    if(kind STREQUAL ALIAS)
        _add_library(${{name}} ALIAS ${{ARGN}})
    else()
        _add_library(${{name}} INTERFACE)
    endif()
endfunction()
function(target_sources)
endfunction()
function(target_compile_features)
endfunction()
function(target_link_libraries name scope)
    _target_link_libraries(${{name}} INTERFACE ${{ARGN}})
endfunction()
"""


class LayersTest(unittest.TestCase):
    def configure(self, text):
        """The status and the message, in one line, of configuring a project with this text."""
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, "CMakeLists.txt"), "w", encoding="utf-8") as file:
                file.write(PREPARED + text)
            result = subprocess.run(
                ["cmake", "-S", folder, "-B", os.path.join(folder, "build")],
                stdout=subprocess.PIPE,
                stderr=subprocess.STDOUT,
                text=True,
                check=False,
            )
            return result.returncode, " ".join(result.stdout.split())

    def refuses(self, text, message):
        status, output = self.configure(text)
        self.assertNotEqual(status, 0, output)
        self.assertIn(message, output)

    def test_an_edge_of_the_table_passes(self):
        status, output = self.configure(
            "tessaly_library(tree SOURCES A.cpp HEADERS A.hpp)\n"
            "tessaly_library(platform SOURCES B.cpp HEADERS B.hpp)\n"
            "tessaly_library(delegate SOURCES C.cpp HEADERS C.hpp USES platform)\n"
        )
        self.assertEqual(status, 0, output)

    def test_an_edge_upwards_is_refused(self):
        self.refuses(
            "tessaly_library(tree SOURCES A.cpp HEADERS A.hpp USES history)\n",
            'Layer "tree" may not use layer "history"; it may use: . Move the code down',
        )

    def test_an_edge_that_is_not_in_the_table_is_refused(self):
        self.refuses(
            "tessaly_library(screens SOURCES A.cpp HEADERS A.hpp USES tree platform_linux)\n",
            'Layer "screens" may not use layer "platform_linux"',
        )

    def test_an_edge_added_afterwards_is_refused(self):
        for target in ("Tessaly::history", "tessaly_history"):
            self.refuses(
                "tessaly_library(history SOURCES A.cpp HEADERS A.hpp)\n"
                "tessaly_library(tree SOURCES B.cpp HEADERS B.hpp)\n"
                f"target_link_libraries(tessaly_tree PRIVATE {target})\n",
                'Layer "tree" may not use layer "history"',
            )

    def test_an_unknown_layer_is_refused(self):
        self.refuses(
            "tessaly_library(cellar SOURCES A.cpp HEADERS A.hpp)\n",
            'There is no layer "cellar". Use one of: tree',
        )

    def test_a_circle_in_the_table_is_refused(self):
        self.refuses(
            "set(TESSALY_MAY_USE_tree history)\ntessaly_check_table()\n",
            'lets "tree" use "history", which does not stand below it',
        )

    def test_a_forgotten_keyword_is_refused(self):
        self.refuses("tessaly_library(tree A.cpp)\n", 'what is "A.cpp"?')


if __name__ == "__main__":
    unittest.main()
