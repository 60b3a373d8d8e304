#!/bin/bash
# tst_run.sh CHECKOUT: ./run through a symbolic link, from elsewhere, and in a checkout that cannot be written; ./test
# with either Qt and with both. The scripts are the real ones; what they install, build and start are stand-ins that
# write down their calls.
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
mkdir -p "$home/packaging" "$home/tests" "$work/bin"
cp "$checkout/run" "$checkout/test" "$home"
cat >"$home/packaging/install-dependencies" <<'END'
#!/bin/sh
echo "dependencies $*" >>"$CALLS"
END
cat >"$work/bin/cmake" <<'END'
#!/bin/sh
echo "cmake $* in $PWD" >>"$CALLS"
[ "$1" = --build ] || exit 0
mkdir -p "build/$3/console"
cat >"build/$3/console/kivconsole" <<'CONSOLE'
#!/bin/sh
echo "console $* plugins $QT_PLUGIN_PATH" >>"$CALLS"
exit 7
CONSOLE
chmod +x "build/$3/console/kivconsole"
END
cat >"$work/bin/ctest" <<'END'
#!/bin/sh
echo "ctest $*" >>"$CALLS"
[ "$2" != "${FAILING:-}" ]
END
printf '#!/bin/sh\n' | tee "$home/tests/files" >"$work/bin/clang-format"
chmod +x "$home/packaging/install-dependencies" "$home/tests/files" "$work/bin"/*
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

# On Qt 6, when it is asked to.
run env DISPLAY=:9 KIVWIDGETS_QT=6 "$home/run" --dark
[ "$status" = 7 ] || fail "on Qt 6 it ended with $status: $(cat "$work/said")"
ran "dependencies qt6"
ran "cmake --build --preset release-qt6 in $home"
ran "console --dark plugins $home/build/release-qt6/plugins"

# ./test runs what it is asked for, ends with the first that fails, and says by its status that it did.
# tested STATUS CTEST-CALLS ENVIRONMENT-AND-ARGUMENTS...
tested() {
    expected=$1
    calls=$2
    shift 2
    run env "$@"
    [ "$status" = "$expected" ] || fail "$* ended with $status: $(cat "$work/said")"
    [ "$(grep '^ctest' "$CALLS" | paste -sd ,)" = "$calls" ] || fail "$* called: $(cat "$CALLS")"
}
tested 0 "ctest --preset ci,ctest --preset qt6 --no-tests=ignore" "$home/test"
ran "cmake --preset ci in $home"
ran "cmake --build --preset qt6 in $home"
tested 0 "ctest --preset ci -R a b,ctest --preset qt6 -R a b --no-tests=ignore" "$home/test" -R "a b"
tested 0 "ctest --preset ci" KIVWIDGETS_QT=5 "$home/test"
tested 0 "ctest --preset qt6 -R a" KIVWIDGETS_QT=6 "$home/test" -R a
tested 1 "ctest --preset ci" FAILING=ci "$home/test"
tested 1 "ctest --preset ci,ctest --preset qt6 --no-tests=ignore" FAILING=qt6 "$home/test"
for script in run test; do
    run env KIVWIDGETS_QT=4 "$home/$script"
    [ "$status" = 2 ] || fail "./$script on Qt 4 ended with $status: $(cat "$work/said")"
    [ "$(cat "$work/said")" = "$script: KIVWIDGETS_QT is 5 or 6, not \"4\"" ] || fail "it says: $(cat "$work/said")"
    [ ! -s "$CALLS" ] || fail "something was called: $(cat "$CALLS")"
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
