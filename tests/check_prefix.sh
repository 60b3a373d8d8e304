#!/bin/sh
# Checks an installed tree as an application uses it: builds a small application against it with CMake and with
# qmake, and runs it. Packages and plain installations get the same checks. Their headers are identical, so they
# need to be compiled for one of them only: "compile" requests that.
# check_prefix.sh CMAKE PREFIX HOST-SOURCES SCRATCH QT-VERSION [compile]
set -eu
cmake=$1
prefix=$2
host=$3
scratch=$4/qt$5
qt=$5
suffix=
other=6
[ "$qt" = 5 ] || { suffix=-qt6; other=5; }
mkdir "$scratch"

fail() {
    echo "check_prefix: $1" >&2
    exit 1
}

library=$(dirname "$(find "$prefix" -name libkivwidgets$suffix.so.1)")
headers=$prefix/include/KivWidgets
[ "$qt" = 5 ] || headers=$prefix/include/kivwidgets-qt6/KivWidgets

# The headers are those of the sources but the private ones, and one for each class in its own spelling.
sources=$host/../../KivWidgets
{
    (cd "$sources" && find . -name '*.h' ! -name '*_p.h')
    sed -nE 's,^class KIVWIDGETS_EXPORT ([A-Za-z]+).*,./\1,p' "$sources"/*.h
} | sort >"$scratch/expected-headers"
(cd "$headers" && find . -type f) | sort | diff "$scratch/expected-headers" - ||
    fail "the installed headers are not those of the sources"

for header in "$headers"/*; do
    name=$(basename "$header")
    case $name in
    *.h) cmp "$sources/$name" "$header" ;;
    *) declares=$(basename "$(grep -lE "^class KIVWIDGETS_EXPORT $name\b" "$sources"/*.h)") &&
        [ "$(cat "$header")" = "#include \"$declares\"" ] ;;
    esac || fail "the installed header $name is not that of the sources"
done

# Every header compiles alone, with the directory's name and without; those in a class's own spelling, of one line,
# do so together.
flags=$(PKG_CONFIG_PATH=$library/pkgconfig pkg-config --cflags kivwidgets$suffix)
mkdir "$scratch/headers"
for header in "$headers"/*; do
    name=$(basename "$header")
    case $name in
    *.h) source=$name ;;
    *) source=classes ;;
    esac
    printf '#include <KivWidgets/%s>\n#include <%s>\n' "$name" "$name" >>"$scratch/headers/$source.cpp"
done
# shellcheck disable=SC2086 # the flags are words
[ "${6:-}" != compile ] || find "$scratch/headers" -name '*.cpp' -print0 |
    xargs -0 -n 7 -P 2 c++ -std=c++17 -fPIC -fsyntax-only -Wall -Werror $flags ||
    fail "a header does not compile alone"

run() {
    # The form loader finds the classes through the plugin for Qt Designer, where that is installed.
    plugins=$library/qt$qt/plugins
    form=
    [ ! -e "$plugins/designer" ] || form=$host/host.ui
    output=$(LD_LIBRARY_PATH=$library QT_PLUGIN_PATH=$plugins QT_QPA_PLATFORM=offscreen "$1" ${form:+"$form"})
    [ "$output" = "host works" ] || fail "the host built with $2 says: $output"
}

# The project as it is for this Qt; what differs is the package's name.
mkdir "$scratch/host" "$scratch/firstconsole"
cp "$host"/* "$scratch/host"
cp "$host"/../../docs/firstconsole/* "$scratch/firstconsole"
if [ "$qt" = 6 ]; then
    sed -i 's/(KivWidgets 1 /(KivWidgets-qt6 1 /; s/Qt5/Qt6/' "$scratch"/*/CMakeLists.txt
    sed -i 's/+= kivwidgets$/+= kivwidgets-qt6/' "$scratch/host/host.pro"
fi
host=$scratch/host

"$cmake" -S "$host" -B "$scratch/cmake" -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/configure.log"
"$cmake" --build "$scratch/cmake" >"$scratch/build.log"
run "$scratch/cmake/host" CMake

# The console of the documentation, built as its page describes.
"$cmake" -S "$scratch/firstconsole" -B "$scratch/first" -DCMAKE_PREFIX_PATH="$prefix" \
    >"$scratch/first.log"
"$cmake" --build "$scratch/first" >>"$scratch/first.log" || fail "$(cat "$scratch/first.log")"
LD_LIBRARY_PATH=$library QT_QPA_PLATFORM=offscreen \
    "$scratch/first/firstconsole" --screenshot "$scratch/first.png"
[ "$(wc -c <"$scratch/first.png")" -gt 4000 ] || fail "the first console shows nothing"

# Another major version is refused.
mkdir "$scratch/other"
sed "s/KivWidgets$suffix 1 /KivWidgets$suffix 2 /" "$host/CMakeLists.txt" >"$scratch/other/CMakeLists.txt"
cp "$host/main.cpp" "$host/host.ui" "$scratch/other"
if "$cmake" -S "$scratch/other" -B "$scratch/refused" -DCMAKE_PREFIX_PATH="$prefix" \
    >"$scratch/refused.log" 2>&1; then
    fail "version 2 was found"
fi
grep -q 'requested version "2"' "$scratch/refused.log" || fail "$(cat "$scratch/refused.log")"

# So is the other Qt, by name.
mkdir "$scratch/mixed"
sed "s/^find_package(Kiv/find_package(Qt$other REQUIRED COMPONENTS Core)\n&/" "$host/CMakeLists.txt" \
    >"$scratch/mixed/CMakeLists.txt"
cp "$host/main.cpp" "$host/host.ui" "$scratch/mixed"
if "$cmake" -S "$scratch/mixed" -B "$scratch/mixed/build" -DCMAKE_PREFIX_PATH="$prefix" \
    >"$scratch/mixed.log" 2>&1; then
    fail "a project of Qt $other got the library of Qt $qt"
fi
tr -s '\n ' ' ' <"$scratch/mixed.log" | grep -q "this project uses Qt $other" || fail "$(cat "$scratch/mixed.log")"

mkdir "$scratch/qmake"
cd "$scratch/qmake"
qmake="qmake -qt=5"
[ "$qt" = 5 ] || qmake=qmake6
# shellcheck disable=SC2086 # a program and its option
PKG_CONFIG_PATH=$library/pkgconfig $qmake "$host/host.pro" >"$scratch/qmake.log" 2>&1
make >>"$scratch/qmake.log" 2>&1 || fail "$(cat "$scratch/qmake.log")"
run "$scratch/qmake/host" qmake
