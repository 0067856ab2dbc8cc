#!/bin/bash
# SPDX-License-Identifier: MIT
# Runs every benchmark of the build, one after another, and puts their results into one table.
# Usage: bench.sh <build directory>. Ends with 1 when a benchmark failed.
set -euo pipefail

output=$(mktemp -d "${TMPDIR:-/tmp}/sayloft-bench-XXXXXX")
trap 'rm -rf "$output"' EXIT
failed=()

mapfile -t programs < <(find "$1" -name 'bench_*' -type f -executable | sort)
[ "${#programs[@]}" -gt 0 ] || { echo "there are no benchmarks in $1" >&2; exit 1; }

for program in "${programs[@]}"; do
    name=$(basename "$program")
    printf '== %s\n' "$name"
    # Lines that begin with RESULT are for the table, the others for whoever watches.
    "$program" | tee "$output/$name" | sed '/^RESULT/d' || failed+=("$name")
done

printf '\nload of the machine: %s, processors: %s\n\n' "$(cut -d' ' -f1-3 /proc/loadavg)" "$(nproc)"
{
    printf 'RESULT\tname\tvalue\tpeer\tvalue\n'
    sed -n '/^RESULT/p' "$output"/bench_*
} | awk -F '\t' '{ printf "%-56s %-30s %-24s %s\n", $2, $3, $4, $5 }'

if [ "${#failed[@]}" -gt 0 ]; then
    printf 'FAILED: %s\n' "${failed[*]}" >&2
    exit 1
fi
