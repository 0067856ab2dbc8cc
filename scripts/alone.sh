#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs a command with processes, network and /tmp of its own, so that several that want the same port,
# process name or display run side by side. Usage: alone.sh <command>...
# Whoever is not root may do so where the kernel lets users have namespaces, and is root in there.
set -eu

as_root=""
[ "$(id -u)" -eq 0 ] || as_root="--map-root-user"

# The shell stays as the first process: somebody must see orphans off. X servers keep their locks in
# /tmp and compile key maps in /var/lib/xkb under names that do not tell displays of one number apart.
# shellcheck disable=SC2016,SC2086  # expanded inside; a word or none
exec unshare $as_root --mount --net --pid --fork --mount-proc --kill-child sh -c '
    mount -t tmpfs -o mode=1777 tmpfs /tmp &&
    { [ ! -d /var/lib/xkb ] || mount -t tmpfs tmpfs /var/lib/xkb; } &&
    ip link set lo up || exit 125
    "$@"
    exit $?' alone "$@"
