#!/bin/bash
# SPDX-License-Identifier: MIT
# Takes docs/pictures/tray-states.png: the five states of the tray item on two panels, four times as
# large as they are. Usage: tray-pictures.sh <build directory>, built with its tests.
set -euo pipefail

picture=$(dirname "$(realpath "$0")")/../docs/pictures/tray-states.png
folder=$(mktemp -d "${TMPDIR:-/tmp}/sayloft-tray-XXXXXX")
trap 'rm -rf "$folder"' EXIT
states=(warming ready recording processing error)
text=(-background white -fill '#333333' -font DejaVu-Sans -pointsize 13 -gravity center)

# row <name of the panel> <beginning of its files>
row() {
    local state cells=()
    for state in "${states[@]}"; do
        cells+=("(" "$folder/$2-$state.png" -filter point -resize "400%" "label:$state" -append
            -bordercolor white -border 4 ")")
    done
    convert "${text[@]}" "(" -size 60x150 "label:$1" ")" +size "${cells[@]}" +append "$folder/$2.png"
}

"$1/tests/support/programs/tray_pictures" "$folder"
row Xfce xfce
row LXQt lxqt
convert "$folder/xfce.png" "$folder/lxqt.png" -append -strip "$picture"
