#!/usr/bin/env bash
# under_xvfb.sh PROGRAM [ARGUMENT...]: runs a program on an X server of its own, with a window manager.
set -euo pipefail

folder=$(mktemp -d)
server='' manager=''
finish() {
    [ -z "$manager" ] || kill "$manager" 2>/dev/null || true
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$folder"
}
trap finish EXIT

Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$folder/display" 2>"$folder/log" &
server=$!
until [ -s "$folder/display" ]; do
    kill -0 "$server" 2>/dev/null || { cat "$folder/log" >&2; exit 1; }
    sleep 0.05
done
DISPLAY=:$(cat "$folder/display")
export DISPLAY QT_QPA_PLATFORM=xcb
# On a display the message bus library would start a bus of its own, and leave it behind.
export DBUS_SESSION_BUS_ADDRESS="unix:path=$folder/no-bus"
# A window that comes up while the manager starts may never be shown: the test begins when it is there.
HOME=$folder openbox --startup "touch $folder/managed" 2>/dev/null &
manager=$!
until [ -e "$folder/managed" ]; do
    kill -0 "$manager" 2>/dev/null || { echo 'the window manager has ended' >&2; exit 1; }
    sleep 0.05
done

"$@"
