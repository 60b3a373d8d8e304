#!/bin/sh
# Configures the project as a machine does that has what the library needs and not what its tests need; then
# asks for more than that machine has, which one line must answer.
# tst_configure.sh CMAKE SOURCE-DIRECTORY QT-VERSION
set -eu
cmake=$1
source=$2
qt=$3

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() {
    echo "tst_configure: $1" >&2
    exit 1
}

lacking="-DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON"
for part in Test UiPlugin Designer UiTools; do
    lacking="$lacking -DCMAKE_DISABLE_FIND_PACKAGE_Qt$qt$part=ON"
done
# configure NAME [OPTION...]: configures into a tree of its own.
configure() {
    name=$1
    shift
    # shellcheck disable=SC2086 # the options are words
    "$cmake" -S "$source" -B "$scratch/$name" -DKIVWIDGETS_QT="$qt" $lacking "$@" >"$scratch/$name.log" 2>&1
}
# refuses NAME TEXT: with what NAME switches on, the configuration ends and says TEXT in one line.
refuses() {
    ! configure "$1" "-DKIVWIDGETS_BUILD_$1=ON" || fail "$1 without what it needs"
    tr -s '\n ' ' ' <"$scratch/$1.log" | grep -qF "$2" || fail "$(cat "$scratch/$1.log")"
}

configure plain || fail "$(cat "$scratch/plain.log")"
refuses TESTS "the tests need Qt$qt Test"
refuses DESIGNER "the plugin for Qt Designer needs Qt$qt Designer"
refuses BENCHMARKS "the benchmarks need Google Benchmark (Debian: libbenchmark-dev)"
if "$cmake" -S "$source" -B "$scratch/four" -DKIVWIDGETS_QT=4 >"$scratch/four.log" 2>&1; then
    fail "there is no Qt 4 here"
fi
grep -q 'KIVWIDGETS_QT is 5 or 6, not "4"' "$scratch/four.log" || fail "$(cat "$scratch/four.log")"
echo "configured, and refused what is missing"
