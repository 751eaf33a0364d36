#!/usr/bin/python3
"""Proves that tools/test_summary.py counts every outcome that ctest can write down."""

import os
import subprocess
import tempfile
import unittest

PROJECT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SUMMARY = os.path.join(PROJECT, "tools", "test_summary.py")

PASSED = '<testcase name="A.passes" status="run"><system-out>fine</system-out></testcase>'
FAILED = '<testcase name="A.fails" status="fail"><failure message=""/></testcase>'
SKIPPED = """<testcase name="A.skips" status="notrun">
<skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/>
<system-out>[ RUN      ] A.skips
/src/ATest.cpp:5: Skipped
no second
disk
[  SKIPPED ] A.skips (0 ms)
[  SKIPPED ] 1 test, listed below:
[  SKIPPED ] A.skips
</system-out></testcase>"""
SKIPPED_SCRIPT = """<testcase name="script" status="notrun">
<skipped message="SKIP_RETURN_CODE=77"/><system-out>trying
no display
</system-out></testcase>"""
DISABLED = '<testcase name="A.later" status="disabled"/>'
NO_PROGRAM = """<testcase name="A.absent" status="notrun">
<skipped message="Unable to find executable"/></testcase>"""


SUITE = '<testcase name="P/A" status="run"/>'
FAILED_SUITE = '<testcase name="P/A" status="fail"/>'
CASE_PASSES = '<testcase name="passes" status="run" result="completed" classname="P/A"/>'
CASE_FAILS = CASE_PASSES.replace("/>", '><failure message="a.cpp:5"/></testcase>')
CASE_SKIPS = CASE_PASSES.replace(
    "/>", '><skipped message="a.cpp:2&#x0A;no second&#x0A;disk"/></testcase>'
).replace("passes", "skips")
CASE_DISABLED = '<testcase name="later" status="notrun" classname="P/A"/>'


class TestSummaryTest(unittest.TestCase):
    def summary(self, *cases, suite=None):
        """The exit status and the lines of output for a run with these cases, and with a suite
        "P/A" that wrote down these cases of its own."""
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "results.xml")
            with open(path, "w", encoding="utf-8") as file:
                file.write(f'<testsuite name="x">{"".join(cases)}</testsuite>')
            if suite is not None:
                with open(os.path.join(folder, "P-A.xml"), "w", encoding="utf-8") as file:
                    file.write(f"<testsuites><testsuite>{suite}</testsuite></testsuites>")
            return self.run_on(path, folder)

    def run_on(self, *arguments):
        result = subprocess.run(
            ["/usr/bin/python3", "-B", SUMMARY, *arguments],
            capture_output=True,
            text=True,
            check=False,
        )
        return result.returncode, result.stdout.splitlines()

    def test_passes_are_counted(self):
        self.assertEqual(self.summary(PASSED, PASSED), (0, ["2 passed, 0 failed"]))

    def test_failures_are_named_and_fail_the_run(self):
        self.assertEqual(
            self.summary(PASSED, FAILED), (1, ["failed: A.fails", "1 passed, 1 failed"])
        )

    def test_skipped_tests_are_listed_with_their_reason_and_are_not_passed(self):
        status, lines = self.summary(PASSED, SKIPPED, SKIPPED_SCRIPT, DISABLED)
        self.assertEqual(status, 0)
        self.assertEqual(
            lines,
            [
                "skipped: A.skips: no second disk",
                "skipped: script: no display",
                "skipped: A.later: disabled",
                "1 passed, 0 failed",
            ],
        )

    def test_a_test_without_its_program_is_a_failure(self):
        status, lines = self.summary(PASSED, NO_PROGRAM)
        self.assertEqual(status, 1)
        self.assertEqual(lines[-1], "1 passed, 1 failed")

    def test_a_run_without_tests_is_a_failure(self):
        status, lines = self.summary()
        self.assertEqual(status, 1)
        self.assertEqual(lines, ["No test was run.", "0 passed, 0 failed"])

    def test_a_run_of_skipped_tests_only_is_a_failure(self):
        self.assertEqual(self.summary(SKIPPED)[0], 1)

    def test_each_case_of_a_suite_counts(self):
        status, lines = self.summary(
            PASSED, SUITE, suite=CASE_PASSES + CASE_SKIPS + CASE_DISABLED + CASE_PASSES
        )
        self.assertEqual(status, 0)
        self.assertEqual(
            lines,
            ["skipped: P/A.skips: no second disk", "skipped: P/A.later: disabled"]
            + ["3 passed, 0 failed"],
        )

    def test_a_failed_case_of_a_suite_is_named(self):
        self.assertEqual(
            self.summary(FAILED_SUITE, suite=CASE_FAILS + CASE_PASSES),
            (1, ["failed: P/A.passes", "1 passed, 1 failed"]),
        )

    def test_a_suite_that_fails_after_its_last_case_is_a_failure(self):
        self.assertEqual(
            self.summary(FAILED_SUITE, suite=CASE_PASSES),
            (1, ["failed: P/A: after its last case", "1 passed, 1 failed"]),
        )

    def test_a_suite_that_wrote_nothing_down_is_a_failure(self):
        for suite in (None, "<"):
            self.assertEqual(
                self.summary(FAILED_SUITE, suite=suite), (1, ["failed: P/A", "0 passed, 1 failed"])
            )

    def test_a_run_that_left_no_results_is_a_failure(self):
        self.assertEqual(self.run_on("/nonexistent/results.xml")[0], 1)


if __name__ == "__main__":
    unittest.main()
