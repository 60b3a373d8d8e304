#!/bin/sh
# Installs the library into a scratch prefix, moves it elsewhere, and uses it from there.
# tst_install.sh CMAKE BUILD-DIRECTORY TESTS-DIRECTORY
set -eu
cmake=$1
build=$2
tests=$3

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

"$cmake" --install "$build" --prefix "$scratch/first" >"$scratch/install.log"
mv "$scratch/first" "$scratch/prefix"
"$tests/check_prefix.sh" "$cmake" "$scratch/prefix" "$tests/host" "$scratch"
echo "installed, moved, and used by both"
