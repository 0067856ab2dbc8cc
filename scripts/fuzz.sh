#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs fuzzers one after the other. Usage: fuzz.sh <build directory> <seconds each> [<name>...]
# Inputs found stay in <build directory>/corpus/<name>, those that fail in <build directory>/failed.
set -eu

build=$1
seconds=$2
shift 2
# shellcheck disable=SC2046  # a list of words on purpose
[ $# -gt 0 ] || set -- $(ls fuzz/corpus)

failed=""
mkdir -p "$build/failed"
for name in "$@"; do
    found="$build/corpus/$name"
    log="$build/corpus/$name.log"
    mkdir -p "$found"
    # Files hold the same words as the text that is fuzzed without them.
    words="fuzz/dictionaries/${name%_files}.dict"
    dictionary=""
    [ ! -e "$words" ] || dictionary="-dict=$words"
    echo "fuzz_$name: $seconds s"
    "$build/fuzz/fuzz_$name" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="$build/failed/$name-" $dictionary \
        "$found" "fuzz/corpus/$name" >"$log" 2>&1 || failed="$failed $name"
    grep -e '^Done' -e ' DONE ' "$log" | sed 's/^/  /' || true
done
[ -z "$failed" ] && exit 0

for name in $failed; do
    echo "fuzz_$name failed:"
    tail -n 60 "$build/corpus/$name.log"
done
exit 1
