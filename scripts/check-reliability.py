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


def names(test, wanted):
    """Whether `wanted`, or what begins so where it ends in "…", is a part of the test's name."""
    parts = re.split(r"[./]", test)
    if wanted.endswith("…"):
        return any(part.startswith(wanted[:-1]) for part in parts)
    return wanted in parts


def missing(tests, named):
    """What a row names and is not there: `names` of tests after the program that has them."""
    program, bare = "", True
    for word in re.findall(r"`[^`]*`|\([^)]*\)|\w+", named):
        if word.startswith("("):
            continue
        if not word.startswith("`"):
            if program and bare:
                yield f"name after {program}"
            program, bare = word, True
            continue
        bare = False
        if not any(test.startswith(program + ".") and names(test, word.strip("`"))
                   for test in tests):
            yield f"{program} {word}"
    if bare:
        yield f"name after {program}" if program else "any test"


def main():
    tests = existing_tests(sys.argv[1])
    faults = [f"{fault}: no {test}" for fault, named in rows() for test in missing(tests, named)]
    print("\n".join(faults), end="\n" if faults else "")
    sys.exit(bool(faults) or not list(rows()))


main()
