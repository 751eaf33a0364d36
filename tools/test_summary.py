#!/usr/bin/python3
"""Counts the results of a ctest run: test_summary.py JUNIT_FILE

Names the tests that were skipped, with the reason, and those that failed. The last line is
"N passed, N failed". Exit status 1 when a test
failed or when none passed.
"""

import re
import sys
import xml.etree.ElementTree as ElementTree

SKIPPED_BY_THE_TEST = re.compile(r"SKIP_(RETURN_CODE|REGULAR_EXPRESSION)")
GOOGLETEST_REASON = re.compile(r": Skipped\n(.*?)\n*\[  SKIPPED \]", re.DOTALL)


def reason_of(output):
    """Why a test was skipped: what GTEST_SKIP() was told, or else the last line of output."""
    told = GOOGLETEST_REASON.search(output)
    text = told.group(1) if told else (output.strip().splitlines() or [""])[-1]
    return " ".join(text.split()) or "no reason given"


def outcome(case):
    """("passed" or "failed" or "skipped", reason) of one test."""
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


def main(arguments):
    try:
        cases = ElementTree.parse(arguments[1]).getroot().findall("testcase")
    except (OSError, ElementTree.ParseError) as error:
        print(f"The results of the tests cannot be read: {error}", file=sys.stderr)
        return 1

    names = {"passed": [], "failed": [], "skipped": []}
    for case in cases:
        kind, reason = outcome(case)
        names[kind].append(case.get("name") + (f": {reason}" if reason else ""))
    for kind in ("skipped", "failed"):
        for name in names[kind]:
            print(f"{kind}: {name}")
    if not cases:
        print("No test was run.")

    print(f"{len(names['passed'])} passed, {len(names['failed'])} failed")
    return 1 if names["failed"] or not names["passed"] else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
