#!/bin/bash
# tst_run.sh CHECKOUT: ./run through a symbolic link, from elsewhere, and in a checkout that cannot be written.
# The script is the real one; what it installs, builds and starts are stand-ins that write down their calls.
set -euo pipefail

checkout=$(realpath "$1")
work=$(mktemp -d)
trap 'chmod -R u+w "$work"; rm -rf "$work"' EXIT
chmod 755 "$work"

fail() {
    echo "FAIL: $*" >&2
    exit 1
}

home="$work/a checkout"
mkdir -p "$home/packaging" "$work/bin"
cp "$checkout/run" "$home/run"
cat >"$home/packaging/install-dependencies" <<'END'
#!/bin/sh
echo "dependencies $*" >>"$CALLS"
END
cat >"$work/bin/cmake" <<'END'
#!/bin/sh
echo "cmake $* in $PWD" >>"$CALLS"
mkdir -p build/release/console
cat >build/release/console/kivconsole <<'CONSOLE'
#!/bin/sh
echo "console $* plugins $QT_PLUGIN_PATH" >>"$CALLS"
exit 7
CONSOLE
chmod +x build/release/console/kivconsole
END
chmod +x "$home/packaging/install-dependencies" "$work/bin/cmake"
export PATH="$work/bin:$PATH" CALLS="$work/calls"

# run COMMAND...: its status in $status, what it says in $work/said.
run() {
    : >"$CALLS"
    status=0
    "$@" >"$work/said" 2>&1 || status=$?
}
ran() {
    grep -qxF -- "$1" "$CALLS" || fail "not called: $1; but: $(cat "$CALLS")"
}

mkdir "$work/elsewhere"
ln -s "$home/run" "$work/elsewhere/console"
ln -s console "$work/elsewhere/again"
for start in "$home/run" "$work/elsewhere/console" "$work/elsewhere/again"; do
    cd "$work/elsewhere"
    run env DISPLAY=:9 "$start" --ups "a b@host"
    [ "$status" = 7 ] || fail "$start ended with $status: $(cat "$work/said")"
    ran "dependencies build"
    ran "cmake --preset release in $home"
    ran "cmake --build --preset release in $home"
    ran "console --ups a b@host plugins $home/build/release/plugins"
done

# Without a display it renders the pages, and takes arguments as they are.
run env -u DISPLAY -u WAYLAND_DISPLAY "$home/run"
ran "console --screenshot build/screenshots plugins $home/build/release/plugins"
run env -u DISPLAY -u WAYLAND_DISPLAY "$home/run" --help
ran "console --help plugins $home/build/release/plugins"

# A checkout that cannot be written: one line that says what it needs, and nothing is called. Root may write
# anywhere, so it is another user who tries.
rm -r "$home/build"
chmod -R a-w "$home"
: >"$CALLS"
chmod a+w "$CALLS"
unwilling=()
if [ "$(id -u)" = 0 ]; then
    unwilling=(setpriv --reuid=65534 --regid=65534 --clear-groups)
fi
run "${unwilling[@]}" "$work/elsewhere/again"
[ "$status" = 1 ] || fail "in a read-only checkout it ended with $status: $(cat "$work/said")"
[ "$(wc -l <"$work/said")" = 1 ] || fail "more than a line: $(cat "$work/said")"
grep -qF "$home/build cannot be written" "$work/said" || fail "it says: $(cat "$work/said")"
[ ! -s "$CALLS" ] || fail "something was called: $(cat "$CALLS")"
# Nor where the directory is there, but not the caller's.
chmod u+w "$home"
mkdir "$home/build"
chmod a-w "$home/build" "$home"
run "${unwilling[@]}" "$home/run" --help
[ "$status" = 1 ] || fail "with a read-only build it ended with $status: $(cat "$work/said")"
[ ! -s "$CALLS" ] || fail "something was called: $(cat "$CALLS")"
echo "passed"
