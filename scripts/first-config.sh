#!/bin/sh
# SPDX-License-Identifier: MIT
# Chooses the starter model for a user who has no configuration, on a machine without a Parakeet
# server. Usage: first-config.sh <bundle>
set -eu

bundle=$1
config="$HOME/.sayloft/config.json"
development="$(dirname "$bundle")/parakeet.cpp/build/examples/server/parakeet-server"

[ ! -e "$config" ] || exit 0
[ ! -e "$bundle/Contents/Helpers/parakeet.cpp/parakeet-server" ] || exit 0
[ ! -e "$development" ] || exit 0
[ -e "$bundle/Contents/Resources/models/starter-en-us.model" ] || exit 0

mkdir -p "$HOME/.sayloft"
printf '{"model":"starter"}' >"$config"
echo "No configuration and no Parakeet server here: $config now chooses the starter model."
