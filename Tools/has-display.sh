#!/usr/bin/env bash
# has-display.sh: succeeds where a program can open windows: where the environment names a display
# server and that server answers.
set -u

if [[ -n "${WAYLAND_DISPLAY:-}" ]]; then
    socket="$WAYLAND_DISPLAY"
    [[ $socket == /* ]] || socket="${XDG_RUNTIME_DIR:-}/$socket"
    [[ -S $socket ]] && exit 0
fi
[[ -n "${DISPLAY:-}" ]] && timeout 5 xdotool getdisplaygeometry >/dev/null 2>&1
