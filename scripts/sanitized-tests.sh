#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs tests that have been built with a sanitizer. Usage: sanitized-tests.sh <build> [<for ctest>...]
# Every report fails the test in which it was made, also where a program that it starts makes it.
set -eu

build=$1
shift
tests=$PWD/tests
# Some tests load a clock of their own before everything else, AddressSanitizer too.
export ASAN_OPTIONS="detect_leaks=1:verify_asan_link_order=0"
export LSAN_OPTIONS="suppressions=$tests/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1"
# Libraries are not instrumented: what they touch under locks that nobody sees is no race.
export TSAN_OPTIONS="ignore_noninstrumented_modules=1:second_deadlock_stack=1"

ctest --test-dir "$build" --output-on-failure --parallel 4 --no-tests=error "$@"
