#!/bin/sh
# SPDX-License-Identifier: MIT
# Static checks: clang-tidy on every file of ours that is compiled. Usage: lint.sh <build directory>
# Prints what clang-tidy found, and at the end the files it was found in.
set -eu

findings=$(mktemp -d)
trap 'rm -rf "$findings"' EXIT

# clang-tidy counts on standard error what it keeps to itself: shown only where it finds fault.
git ls-files '*.cpp' | xargs -P "$(nproc)" -n 1 sh -c '
    report="$1/$(echo "$2" | tr / :)"
    clang-tidy -p "$0" --quiet "$2" >"$report" 2>&1 && rm "$report" || cat "$report"
' "$1" "$findings"

test -z "$(ls -A "$findings")" && exit 0
echo "clang-tidy finds fault with:"
ls "$findings" | tr : / | sed 's/^/  /'
exit 1
