#!/bin/bash
# with_two_screens.sh QT-VERSION COMMAND...: runs a command on a virtual display of its own with two screens, the
# second one with twice the pixel ratio.
set -euo pipefail

qt=$1
shift
unset WAYLAND_DISPLAY XAUTHORITY QT_SCALE_FACTOR
export QT_SCREEN_SCALE_FACTORS="1;2"
# Qt 6 finds the screens of an X server by an extension that has a single one here; its platform without a
# display can have several.
if [ "$qt" = 6 ]; then
    screens=$(mktemp)
    trap 'rm -f "$screens"' EXIT
    cat >"$screens" <<END
{"screens": [{"name": "first", "x": 0, "y": 0, "width": 1024, "height": 768,
              "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
             {"name": "second", "x": 1024, "y": 0, "width": 2048, "height": 1536,
              "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]}
END
    QT_QPA_PLATFORM=offscreen:configfile=$screens "$@"
    exit
fi

ended() {
    [ -n "${display:-}" ] || return 0
    kill "$display" 2>/dev/null || true
    wait "$display" || true
}
trap ended EXIT

coproc Xvfb -displayfd 1 -screen 0 1024x768x24 -screen 1 2048x1536x24 -extension RANDR +xinerama -nolisten tcp -noreset 2>/dev/null
display=$COPROC_PID
read -r number <&"${COPROC[0]}" || { echo "Xvfb did not start" >&2; exit 1; }
export DISPLAY=:$number QT_QPA_PLATFORM=xcb

"$@"
