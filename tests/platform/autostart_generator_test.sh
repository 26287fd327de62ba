#!/usr/bin/env bash
# autostart_generator_test.sh WRITER: systemd starts the entry that we write, and leaves one that was switched off.
# WRITER prints the entry for the program that it is given.
set -euo pipefail

generator=/lib/systemd/user-generators/systemd-xdg-autostart-generator
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/config/autostart" "$work/home" "$work/program dir"
program="$work/program dir/brevlin"
printf '#!/bin/sh\n' >"$program"
chmod +x "$program"
entry=$work/config/autostart/com.quillmark.Brevlin.desktop

units() {
    rm -rf "$work/units"
    mkdir -p "$work/units"
    HOME=$work/home XDG_CONFIG_HOME=$work/config XDG_CONFIG_DIRS=$work/none XDG_CURRENT_DESKTOP=XFCE \
        "$generator" "$work/units" "$work/units" "$work/units" 2>"$work/log" || { cat "$work/log"; exit 1; }
    find "$work/units" -name '*Brevlin*.service' -type f
}

"$1" "$program" >"$entry"
unit=$(units)
[[ -n "$unit" ]] || { echo "systemd starts nothing for:"; cat "$entry" "$work/log"; exit 1; }
grep -qF "$program" "$unit" || { echo "It would start another program:"; cat "$unit"; exit 1; }

echo Hidden=true >>"$entry"
unit=$(units)
[[ -z "$unit" ]] || { echo "systemd starts an entry that was switched off"; exit 1; }
