#!/bin/sh
# Installs the library into a scratch prefix, moves it elsewhere, and uses it from there.
# tst_install.sh CMAKE BUILD-DIRECTORY TESTS-DIRECTORY QT-VERSION
set -eu
cmake=$1
build=$2
tests=$3
qt=$4

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

"$cmake" --install "$build" --prefix "$scratch/first" >"$scratch/install.log"
mv "$scratch/first" "$scratch/prefix"
for program in kivconsole kivgallery; do
    for file in bin/$program share/applications/$program.desktop \
        share/icons/hicolor/scalable/apps/$program.svg share/man/man1/$program.1.gz; do
        [ -s "$scratch/prefix/$file" ] || { echo "tst_install: no $file" >&2; exit 1; }
    done
done
"$tests/check_prefix.sh" "$cmake" "$scratch/prefix" "$tests/host" "$scratch" "$qt" compile
echo "installed, moved, and used by both"
