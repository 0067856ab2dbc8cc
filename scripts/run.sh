#!/bin/sh
# SPDX-License-Identifier: MIT
# Starts Sayloft on this desktop; without one, shows a dictation on a virtual desktop.
# Usage: run.sh <bundle>
set -eu

bundle=$(realpath "$1")
here=$(dirname "$(realpath "$0")")

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    "$here/install-packages.sh" "$here/../packaging/debian-packages-desktop.txt"
    exec "$here/virtual-dictation.sh" "$bundle"
fi

"$here/first-config.sh" "$bundle"
echo "Starting Sayloft, or showing the settings of the one that runs already."
echo "Hold Shift+Super, speak, let go. Ctrl+C ends it."
exec "$bundle/Contents/bin/sayloft"
