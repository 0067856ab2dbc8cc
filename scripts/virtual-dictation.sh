#!/bin/bash
# SPDX-License-Identifier: MIT
# One real dictation on a desktop of its own: an X server, a window manager and a compositor, a sound
# server whose microphone hears a spoken sentence, an editor, and Sayloft as a user starts it.
# Usage: virtual-dictation.sh <bundle>. Ends with 0 only when the editor holds the transcript.
set -euo pipefail

bundle=$1
here=$(dirname "$(realpath "$0")")
sentence="please send me the report before noon"
room=$(mktemp -d "${TMPDIR:-/tmp}/sayloft-dictation-XXXXXX")
pictures=$(dirname "$bundle")/pictures
note="$room/note.txt"
children=()

step() { printf '%s\n' "• $*"; }

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    [ ! -e "$HOME/.sayloft/sayloft.log" ] || sed 's/^/  log: /' "$HOME/.sayloft/sayloft.log" >&2
    exit 1
}

clean_up() {
    # The last started is the first ended: programs before their servers.
    for ((i = ${#children[@]} - 1; i >= 0; i--)); do
        timeout --signal=KILL 8 tail --pid="${children[i]}" -f /dev/null &
        kill "${children[i]}" 2>/dev/null || true
        wait $! 2>/dev/null || kill -KILL "${children[i]}" 2>/dev/null || true
    done
    rm -rf "$room"
}
trap clean_up EXIT
trap 'exit 1' INT TERM

# until_true <seconds> <what> <command...>
until_true() {
    local deadline=$((SECONDS + $1)) what=$2
    shift 2
    until "$@" >/dev/null 2>&1; do
        [ "$SECONDS" -lt "$deadline" ] || fail "waited too long for $what"
        sleep 0.05
    done
}

start() {
    "$@" >"$room/$(basename "$1").out" 2>&1 &
    children+=($!)
}

picture() { import -window root "$pictures/$1"; }

logged() { grep -q "$1" "$HOME/.sayloft/sayloft.log"; }

# A stranger at the port would not do.
helper_answers() { pgrep -x parakeet-server && curl -s -o /dev/null http://127.0.0.1:8090/; }

window_manager_is_up() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'; }

note_holds_text() {
    xdotool key --clearmodifiers ctrl+s
    [ -s "$note" ]
}

# Everything personal is found through the home directory, so this is a new user.
export HOME="$room/home"
mkdir -p "$HOME" "$pictures"
unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME
export XDG_RUNTIME_DIR="$room/run" GSETTINGS_BACKEND=memory NO_AT_BRIDGE=1
mkdir -m 700 "$XDG_RUNTIME_DIR"

step "X server with a window manager and a compositor"
exec {display_pipe}<> <(:)
Xvfb -displayfd "$display_pipe" -screen 0 1280x800x24 -noreset -nolisten tcp >"$room/Xvfb.out" 2>&1 &
children+=($!)
read -r -t 20 -u "$display_pipe" number || fail "the X server did not come up"
export DISPLAY=":$number"
start openbox
until_true 10 "the window manager" window_manager_is_up
xsetroot -solid '#3b5568' 2>/dev/null || true
start picom --backend xrender --config /dev/null

step "Sound server with a microphone"
export PULSE_SERVER="unix:$room/pulse.socket" PULSE_RUNTIME_PATH="$room/pulse"
start pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no \
    -L "module-native-protocol-unix auth-anonymous=1 socket=$room/pulse.socket" \
    -L "module-null-sink sink_name=room rate=16000 channels=1 format=s16le" \
    -L "module-remap-source source_name=microphone master=room.monitor channels=1 source_properties='device.description=\"Built-in Microphone\" device.form_factor=internal device.class=sound'"
until_true 10 "the sound server" pactl info
pactl set-default-source microphone
# Without a listener the room wakes up in blocks of two seconds and swallows the first words.
start parec --latency-msec=20 -d room.monitor --format=s16le --rate=16000 --channels=1

step "Editor (mousepad)"
: >"$note"
start mousepad --disable-server "$note"
until_true 20 "the editor's window" xdotool search --onlyvisible --class mousepad
editor=$(xdotool search --onlyvisible --class mousepad | tail -n 1)
xdotool windowactivate --sync "$editor"

step "Sayloft"
"$here/first-config.sh" "$bundle"
start "$bundle/Contents/bin/sayloft"
until_true 20 "Sayloft to watch the keys" logged "event tap installed OK"
until_true 30 "the speech helper" helper_answers

step "Shift+Super down"
flite -voice rms -t "$sentence" -o "$room/sentence.wav"
xdotool keydown Shift_L keydown Super_L
until_true 5 "the recording to begin" logged "recording @"
sleep 0.4 # a speaker's breath
step "Speaking: $sentence"
paplay --latency-msec=30 --device=room "$room/sentence.wav"
picture speaking.png
sleep 0.4
step "Shift+Super up"
xdotool keyup Super_L keyup Shift_L

until_true 30 "the transcript" logged "^TRANSCRIPT"
until_true 10 "the text in the editor" note_holds_text
picture dictated.png

transcript=$(sed -n "s/^TRANSCRIPT .* text='\(.*\)'$/\1/p" "$HOME/.sayloft/sayloft.log" | tail -n 1)
held=$(cat "$note")
printf '\nSpoken:      %s\nTranscript:  %s\nEditor holds: %s\nPictures:    %s\n' \
    "$sentence" "$transcript" "$held" "$pictures/speaking.png, $pictures/dictated.png"
[ -n "$transcript" ] || fail "there is no transcript"
[ "$held" = "$transcript" ] || fail "the editor does not hold the transcript"
