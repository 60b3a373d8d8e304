#!/bin/sh
# Packs the sources, unpacks them where there is no git, and uses them there.
# tst_source.sh CMAKE SOURCE-DIRECTORY
set -eu
cmake=$1
source=$2

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() {
    echo "tst_source: $1" >&2
    exit 1
}

"$source/packaging/build-source" "$scratch/one.tar.gz" >/dev/null
"$source/packaging/build-source" "$scratch/two.tar.gz" >/dev/null
cmp "$scratch/one.tar.gz" "$scratch/two.tar.gz" || fail "two archives of the same sources differ"
mkdir "$scratch/unpacked"
tar -xzf "$scratch/one.tar.gz" -C "$scratch/unpacked"
tree=$(echo "$scratch"/unpacked/kivwidgets-*)
[ -d "$tree" ] || fail "not one directory in the archive"
[ -e "$tree/.git" ] && fail "git's files in the archive"

# The same files, whether git lists them or not.
"$source/tests/files" | LC_ALL=C sort >"$scratch/with"
"$tree/tests/files" >"$scratch/without"
diff "$scratch/with" "$scratch/without" || fail "files are missing"
"$tree/tests/files" '*.md' | grep -qx 'docs/aero.md' || fail "patterns do not match in directories"

PATH=$scratch/bin:$PATH
mkdir "$scratch/bin"
printf '#!/bin/sh\nexit 99\n' >"$scratch/bin/git"
chmod +x "$scratch/bin/git"
"$tree/docs/check-pages" || fail "the pages need git"
"$cmake" -S "$tree" -B "$scratch/build" -G Ninja -DKIVWIDGETS_BUILD_TESTS=ON \
    -DKIVWIDGETS_PRECOMPILE_HEADERS=ON >"$scratch/log" 2>&1 ||
    fail "$(cat "$scratch/log")"
"$cmake" --build "$scratch/build" --target tst_version >"$scratch/log" 2>&1 ||
    fail "$(cat "$scratch/log")"
QT_QPA_PLATFORM=offscreen "$scratch/build/tests/tst_version" >"$scratch/log" 2>&1 || fail "$(cat "$scratch/log")"
echo "packed, unpacked, and used"
