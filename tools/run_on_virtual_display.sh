#!/usr/bin/env bash
# run_on_virtual_display.sh PROGRAM [ARGUMENT …]: starts a program where there is no display, on a virtual one with a
# window manager, saves a picture of it as build/brevlin.png, and ends when it ends or is interrupted.
set -euo pipefail

picture=$(pwd)/build/brevlin.png
children=()
program=
# The program first: it shall end as a program does, not because its display is gone.
stop() {
    trap - EXIT
    [[ -n "$program" ]] && { kill "$program" && wait "$program"; } 2>/dev/null
    kill "${children[@]}" 2>/dev/null
    wait 2>/dev/null
}
trap stop EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

ready=$(mktemp)
Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp 3>"$ready" 2>/dev/null &
children+=($!)
for _ in $(seq 100); do
    [[ -s "$ready" ]] && break
    sleep 0.1
done
DISPLAY=:$(cat "$ready")
rm -f "$ready"
export DISPLAY
openbox --sm-disable >/dev/null 2>&1 &
children+=($!)

echo "There is no display: Brevlin runs on the virtual display $DISPLAY. Ctrl+C ends it."
if [[ -z "${XDG_RUNTIME_DIR:-}" ]]; then
    XDG_RUNTIME_DIR=$(mktemp -d)
    export XDG_RUNTIME_DIR
fi
if [[ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ]]; then
    bus=$XDG_RUNTIME_DIR/brevlin-bus
    dbus-daemon --session --nofork --address="unix:path=$bus" 2>/dev/null &
    children+=($!)
    export DBUS_SESSION_BUS_ADDRESS=unix:path=$bus
    for _ in $(seq 50); do
        [[ -S "$bus" ]] && break
        sleep 0.1
    done
fi
"$@" &
program=$!

for _ in $(seq 100); do
    xdotool search --onlyvisible --name '^Brevlin$' >/dev/null 2>&1 && break
    kill -0 "$program" 2>/dev/null || break
    sleep 0.1
done
sleep 1
if import -window root "$picture" 2>/dev/null; then
    echo "A picture of it: $picture"
fi
wait "$program"
