#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that every row of docs/reliability.md names tests that exist.

Usage: check-reliability.py <build directory>
"""
import re
import subprocess
import sys

DOCUMENT = "docs/reliability.md"


def existing_tests(build):
    listing = subprocess.run(["ctest", "--test-dir", build, "-N"], check=True,
                             capture_output=True, text=True).stdout
    return re.findall(r"Test +#\d+: (\S+)", listing)


def rows():
    for line in open(DOCUMENT, encoding="utf-8"):
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if line.startswith("|") and len(cells) == 3 and not re.fullmatch(r"-+|fault", cells[0]):
            yield cells[0], cells[2]


def missing(tests, named):
    """What a row names and is not there: programs, and `names…` of tests of the program before."""
    program = ""
    for word in re.findall(r"`[^`]*`|\([^)]*\)|\w+", named):
        if word.startswith("("):
            continue
        if not word.startswith("`"):
            program = word
        wanted = word.strip("`").rstrip("…") if word.startswith("`") else ""
        if not any(test.startswith(program + ".") and wanted in test for test in tests):
            yield f"{program} {word}" if wanted else program
    if not program:
        yield "any test"


def main():
    tests = existing_tests(sys.argv[1])
    faults = [f"{fault}: no {test}" for fault, named in rows() for test in missing(tests, named)]
    print("\n".join(faults), end="\n" if faults else "")
    sys.exit(bool(faults) or not list(rows()))


main()
