#!/bin/sh
# SPDX-License-Identifier: MIT
# Installs the Debian packages that the given lists name and this machine lacks.
set -eu

wanted=$(cat "$@" | sed -e 's/#.*//' | tr -s '[:space:]' ' ')

if ! command -v dpkg-query >/dev/null 2>&1; then
    echo "This is not a Debian system. Please install the equivalents of:$wanted" >&2
    exit 0
fi

missing=""
for package in $wanted; do
    status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = "installed" ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

if [ "$(id -u)" -eq 0 ]; then
    as_root=""
elif command -v sudo >/dev/null 2>&1; then
    as_root="sudo"
else
    echo "These packages are missing, and there is neither root nor sudo to install them:" >&2
    echo "   $missing" >&2
    echo "Ask an administrator to run: apt-get install$missing" >&2
    exit 1
fi

echo "Installing:$missing"
export DEBIAN_FRONTEND=noninteractive
$as_root apt-get update -qq
# shellcheck disable=SC2086  # a list of words on purpose
$as_root apt-get install -y -qq --no-install-recommends $missing
