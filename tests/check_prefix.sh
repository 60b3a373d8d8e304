#!/bin/sh
# Checks an installed tree as a host meets it: its headers, and a small host that is built against it with
# CMake and with qmake, and run. Packages and plain installations are held to the same.
# check_prefix.sh CMAKE PREFIX HOST-SOURCES SCRATCH
set -eu
cmake=$1
prefix=$2
host=$3
scratch=$4

fail() {
    echo "check_prefix: $1" >&2
    exit 1
}

library=$(dirname "$(find "$prefix" -name libkivwidgets.so.1)")
headers=$prefix/include/KivWidgets

# The headers are those of the sources but the private ones, and one for each class in its own spelling.
sources=$host/../../KivWidgets
{
    (cd "$sources" && find . -name '*.h' ! -name '*_p.h')
    sed -nE 's,^class KIVWIDGETS_EXPORT ([A-Za-z]+).*,./\1,p' "$sources"/*.h
} | sort >"$scratch/expected-headers"
(cd "$headers" && find . -type f) | sort | diff "$scratch/expected-headers" - ||
    fail "the installed headers are not those of the sources"

# Every header compiles alone, with the directory's name and without.
flags=$(PKG_CONFIG_PATH=$library/pkgconfig pkg-config --cflags kivwidgets)
mkdir "$scratch/headers"
for header in "$headers"/*; do
    name=$(basename "$header")
    printf '#include <KivWidgets/%s>\n#include <%s>\n' "$name" "$name" >"$scratch/headers/$name.cpp"
done
# shellcheck disable=SC2086 # the flags are words
find "$scratch/headers" -name '*.cpp' -print0 |
    xargs -0 -n 11 -P 2 c++ -std=c++17 -fPIC -fsyntax-only -Wall -Werror $flags ||
    fail "a header does not compile alone"

run() {
    output=$(LD_LIBRARY_PATH=$library QT_QPA_PLATFORM=offscreen "$1")
    [ "$output" = "host works" ] || fail "the host built with $2 says: $output"
}

"$cmake" -S "$host" -B "$scratch/cmake" -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/configure.log"
"$cmake" --build "$scratch/cmake" >"$scratch/build.log"
run "$scratch/cmake/host" CMake

# The console of the documentation, built as its page describes.
"$cmake" -S "$host/../../docs/firstconsole" -B "$scratch/first" -DCMAKE_PREFIX_PATH="$prefix" \
    >"$scratch/first.log"
"$cmake" --build "$scratch/first" >>"$scratch/first.log" || fail "$(cat "$scratch/first.log")"
LD_LIBRARY_PATH=$library QT_QPA_PLATFORM=offscreen \
    "$scratch/first/firstconsole" --screenshot "$scratch/first.png"
[ "$(wc -c <"$scratch/first.png")" -gt 4000 ] || fail "the first console shows nothing"

# Another major version is refused.
mkdir "$scratch/other"
sed 's/KivWidgets 1 /KivWidgets 2 /' "$host/CMakeLists.txt" >"$scratch/other/CMakeLists.txt"
cp "$host/main.cpp" "$scratch/other"
if "$cmake" -S "$scratch/other" -B "$scratch/refused" -DCMAKE_PREFIX_PATH="$prefix" \
    >"$scratch/refused.log" 2>&1; then
    fail "version 2 was found"
fi
grep -q 'requested version "2"' "$scratch/refused.log" || fail "$(cat "$scratch/refused.log")"

mkdir "$scratch/qmake"
cd "$scratch/qmake"
PKG_CONFIG_PATH=$library/pkgconfig qmake -qt=5 "$host/host.pro" >"$scratch/qmake.log" 2>&1
make >>"$scratch/qmake.log" 2>&1 || fail "$(cat "$scratch/qmake.log")"
run "$scratch/qmake/host" qmake
