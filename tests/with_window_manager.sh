#!/bin/bash
# with_window_manager.sh COMMAND...: runs a command on a virtual screen of its own with a window manager.
set -euo pipefail

ended() {
    for process in "${manager:-}" "${screen:-}"; do
        [ -n "$process" ] || continue
        kill "$process" 2>/dev/null || true
        wait "$process" || true
    done
}
trap ended EXIT

coproc Xvfb -displayfd 1 -screen 0 1024x768x24 -nolisten tcp -noreset 2>/dev/null
screen=$COPROC_PID
read -r number <&"${COPROC[0]}" || { echo "Xvfb did not start" >&2; exit 1; }
unset WAYLAND_DISPLAY XAUTHORITY
export DISPLAY=:$number QT_QPA_PLATFORM=xcb

# Its own default font is not on every screen.
evilwm -fn fixed &
manager=$!
until xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"; do
    kill -0 "$manager" 2>/dev/null || { echo "evilwm did not start" >&2; exit 1; }
    sleep 0.05
done

"$@"
