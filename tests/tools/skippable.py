"""Runs the tests of a script so that ctest hears of those that were skipped."""

import sys
import unittest


def main():
    """Runs the tests that the arguments name, all without any.

    Exits with 1 when a test failed, and with 77 when one was skipped, after a last line of output
    that says why.
    """
    result = unittest.main(module="__main__", exit=False).result
    if not result.wasSuccessful():
        sys.exit(1)
    if result.skipped:
        print(", ".join(sorted({reason for _, reason in result.skipped})), flush=True)
        sys.exit(77)
