#!/bin/sh
# Installs the library into a scratch prefix, moves it elsewhere, and builds a small host against it with
# CMake and with qmake.
# tst_install.sh CMAKE BUILD-DIRECTORY HOST-SOURCES
set -eu
cmake=$1
build=$2
host=$3

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() {
    echo "tst_install: $1" >&2
    exit 1
}

"$cmake" --install "$build" --prefix "$scratch/first" >"$scratch/install.log"
mv "$scratch/first" "$scratch/prefix"
prefix=$scratch/prefix
library=$(dirname "$(find "$prefix" -name libkivwidgets.so.1)")
headers=$prefix/include/KivWidgets

# The list of headers is complete, and no private one is in it.
[ -z "$(find "$prefix" -name '*_p.h')" ] || fail "a private header is installed"
[ "$(find "$headers" -name '*.h' | wc -l)" = 22 ] || fail "not 22 headers in lower case"
[ "$(find "$headers" -type f ! -name '*.h' | wc -l)" = 21 ] || fail "not 21 forwarding headers"

# Every header compiles alone.
flags=$(PKG_CONFIG_PATH=$library/pkgconfig pkg-config --cflags kivwidgets)
for header in "$headers"/*; do
    # shellcheck disable=SC2086 # the flags are words
    echo "#include <KivWidgets/$(basename "$header")>" |
        c++ -std=c++17 -fPIC -fsyntax-only -Wall -Werror $flags -x c++ - ||
        fail "$(basename "$header") does not compile alone"
done

run() {
    output=$(LD_LIBRARY_PATH=$library QT_QPA_PLATFORM=offscreen "$1")
    [ "$output" = "host works" ] || fail "the host built with $2 says: $output"
}

"$cmake" -S "$host" -B "$scratch/cmake" -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/configure.log"
"$cmake" --build "$scratch/cmake" >"$scratch/build.log"
run "$scratch/cmake/host" CMake

# Another major version is refused.
sed 's/KivWidgets 1 /KivWidgets 2 /' "$host/CMakeLists.txt" >"$scratch/CMakeLists.txt"
cp "$host/main.cpp" "$scratch"
if "$cmake" -S "$scratch" -B "$scratch/refused" -DCMAKE_PREFIX_PATH="$prefix" \
    >"$scratch/refused.log" 2>&1; then
    fail "version 2 was found"
fi

mkdir "$scratch/qmake"
cd "$scratch/qmake"
PKG_CONFIG_PATH=$library/pkgconfig qmake -qt=5 "$host/host.pro" >"$scratch/qmake.log" 2>&1
make >>"$scratch/qmake.log" 2>&1 || fail "$(cat "$scratch/qmake.log")"
run "$scratch/qmake/host" qmake
echo "installed, moved, and used by both"
