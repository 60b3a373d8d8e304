#!/bin/bash
# with_two_screens.sh COMMAND...: runs a command on a virtual display of its own with two screens, the
# second one with twice the pixel ratio.
set -euo pipefail

ended() {
    [ -n "${display:-}" ] || return 0
    kill "$display" 2>/dev/null || true
    wait "$display" || true
}
trap ended EXIT

coproc Xvfb -displayfd 1 -screen 0 1024x768x24 -screen 1 2048x1536x24 -extension RANDR +xinerama -nolisten tcp -noreset 2>/dev/null
display=$COPROC_PID
read -r number <&"${COPROC[0]}" || { echo "Xvfb did not start" >&2; exit 1; }
unset WAYLAND_DISPLAY XAUTHORITY QT_SCALE_FACTOR
export DISPLAY=:$number QT_QPA_PLATFORM=xcb QT_SCREEN_SCALE_FACTORS="1;2"

"$@"
