#!/usr/bin/python3
"""Counts the results of a ctest run: test_summary.py JUNIT_FILE [SUITES_FOLDER]

A test of ctest that is a whole suite has left SUITES_FOLDER/<suite>.xml, and each case counts.
Names the tests that were skipped, with the reason, and those that failed. The last line is
"N passed, N failed". Exit status 1 when a test failed or when none passed.
"""

import os
import re
import sys
import xml.etree.ElementTree as ElementTree

SKIPPED_BY_THE_TEST = re.compile(r"SKIP_(RETURN_CODE|REGULAR_EXPRESSION)")
GOOGLETEST_REASON = re.compile(r": Skipped\n(.*?)\n*\[  SKIPPED \]", re.DOTALL)


def one_line(text):
    return " ".join(text.split()) or "no reason given"


def reason_of(output):
    """Why a test was skipped: what GTEST_SKIP() was told, or else the last line of output."""
    told = GOOGLETEST_REASON.search(output)
    return one_line(told.group(1) if told else (output.strip().splitlines() or [""])[-1])


def outcome(case):
    """("passed" or "failed" or "skipped", reason) of one test of ctest."""
    status = case.get("status")
    output = case.findtext("system-out") or ""
    if status == "run":
        return "passed", ""
    if status == "disabled":
        return "skipped", "disabled"
    skipped = case.find("skipped")
    if skipped is None:
        return "failed", ""
    message = skipped.get("message", "")
    if SKIPPED_BY_THE_TEST.match(message):
        return "skipped", reason_of(output)
    # ctest could not run it: no program, or what it depends on failed.
    return "failed", message


def case_outcome(case):
    """The same of one case of a suite, as GoogleTest writes it down."""
    if case.find("failure") is not None:
        return "failed", ""
    skipped = case.find("skipped")
    if skipped is not None:
        # The message begins with the place in the source.
        return "skipped", one_line(skipped.get("message", "").partition("\n")[2])
    return ("skipped", "disabled") if case.get("status") == "notrun" else ("passed", "")


def outcomes_of(test, folder):
    """(name, outcome, reason) of a test of ctest, or of the cases that it consists of."""
    name = test.get("name")
    kind, reason = outcome(test)
    try:
        root = ElementTree.parse(os.path.join(folder, name.replace("/", "-") + ".xml")).getroot()
    except (OSError, ElementTree.ParseError):
        return [(name, kind, reason)]  # a single test, or a suite that crashed
    cases = [
        (f"{case.get('classname')}.{case.get('name')}", *case_outcome(case))
        for case in root.iter("testcase")
    ]
    if kind == "failed" and all(each[1] != "failed" for each in cases):
        cases.append((name, "failed", "after its last case"))
    return cases


def main(arguments):
    try:
        tests = ElementTree.parse(arguments[1]).getroot().findall("testcase")
    except (OSError, ElementTree.ParseError) as error:
        print(f"The results of the tests cannot be read: {error}", file=sys.stderr)
        return 1

    folder = arguments[2] if len(arguments) > 2 else ""
    names = {"passed": [], "failed": [], "skipped": []}
    for test in tests:
        for name, kind, reason in outcomes_of(test, folder):
            names[kind].append(name + (f": {reason}" if reason else ""))
    for kind in ("skipped", "failed"):
        for name in names[kind]:
            print(f"{kind}: {name}")
    if not tests:
        print("No test was run.")

    print(f"{len(names['passed'])} passed, {len(names['failed'])} failed")
    return 1 if names["failed"] or not names["passed"] else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
