#!/bin/sh
# SPDX-License-Identifier: MIT
# Static checks: clang-tidy on every file of ours that is compiled. Usage: lint.sh <build directory>
set -eu

git ls-files '*.cpp' | xargs -P "$(nproc)" -n 1 clang-tidy -p "$1" --quiet
