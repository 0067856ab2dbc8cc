#!/bin/bash
# SPDX-License-Identifier: MIT
# Takes the pictures of the windows in docs/pictures. Usage: window-pictures.sh <build directory>,
# built with its tests.
set -euo pipefail

pictures=$(dirname "$(realpath "$0")")/../docs/pictures
folder=$(mktemp -d "${TMPDIR:-/tmp}/sayloft-windows-XXXXXX")
trap 'rm -rf "$folder"' EXIT

"$1/ui/tests/ui_pictures" >"$folder/log" || { cat "$folder/log" >&2; exit 1; }
convert "$1/pictures/settings-two-models-light.png" -strip "$pictures/settings.png"
convert "$1/pictures/onboarding-starter.png" -strip "$pictures/onboarding.png"
convert "$1/pictures/dictionary-light.png" -strip "$pictures/dictionary.png"
