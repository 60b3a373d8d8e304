#!/bin/sh
# Builds the Debian packages, which lintian checks, unpacks them into a scratch root, and uses what they
# contain: library, headers, plugins and programs.
# tst_packages.sh CMAKE TESTS-DIRECTORY DESIGNER-TEST
set -eu
cmake=$1
tests=$2
designer_test=$3

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() {
    echo "tst_packages: $1" >&2
    exit 1
}

"$tests/../packaging/build-packages" "$scratch/packages" >"$scratch/packages.log" 2>&1 ||
    fail "$(cat "$scratch/packages.log")"

# Each package contains what its list says, with these rights, and nothing else; check_prefix.sh knows the headers.
root=$scratch/root
triplet=$(dpkg-architecture -q DEB_HOST_MULTIARCH)
for package in "$scratch"/packages/*.deb; do
    name=$(dpkg-deb -f "$package" Package)
    dpkg-deb --ctrl-tarfile "$package" | tar -t >"$scratch/control"
    grep -qx './md5sums' "$scratch/control" || fail "$name has no checksums"
    dpkg-deb -c "$package" | grep -v '/$' | sed -E \
        "s,^(\S+) (\S+) +[0-9]+ \S+ \S+ \./,$name \1 \2 ,; s,/$triplet/,/TRIPLET/,g; s, -> .*,,"
    dpkg -x "$package" "$root"
done | sort | grep -vE \
    -e '^libkivwidgets(-qt6)?-dev -rw-r--r-- root/root usr/include/(kivwidgets-qt6/)?KivWidgets/' \
    -e '^libkivwidgets-doc -rw-r--r-- root/root usr/share/doc/libkivwidgets-doc/html/' \
    -e '-dbgsym -rw-r--r-- root/root usr/lib/debug/\.build-id/[0-9a-f]{2}/[0-9a-f]+\.debug$' \
    -e '-dbgsym lrwxrwxrwx root/root usr/share/doc/' >"$scratch/contents"
sort "$tests/packages.list" | diff - "$scratch/contents" || fail "the packages' contents differ"

# field PACKAGE FIELD TEXT: the package's field contains the text.
field() {
    dpkg-deb -f "$scratch"/packages/"$1"_*.deb "$2" | grep -qF "$3" || fail "$1: $2 lacks $3"
}
version=$(dpkg-deb -f "$scratch"/packages/libkivwidgets1_*.deb Version)
for name in libkivwidgets-dev kivwidgets-designer kivwidgets-accessibility kivconsole kivgallery python3-kivwidgets; do
    field $name Depends "libkivwidgets1 (= $version)"
done
field libkivwidgets-dev Depends qtbase5-dev
field libkivwidgets1 Depends libqt5widgets5
field kivconsole Depends libqt5network5
field kivconsole Depends libqt5sql5-sqlite
field kivconsole Depends libsimdjson14
field kivconsole Recommends kivwidgets-accessibility
field python3-kivwidgets Depends python3-pyqt5
field python3-kivwidgets Depends python3-kivwidgets-common
field python3-kivwidgets-common Architecture all
for name in libkivwidgets-qt6-dev kivwidgets-qt6-designer kivwidgets-qt6-accessibility; do
    field $name Depends "libkivwidgets-qt6-1 (= $version)"
done
field libkivwidgets-qt6-dev Depends qt6-base-dev
field libkivwidgets-qt6-1 Depends libqt6widgets6
for file in shlibs triggers; do
    for name in libkivwidgets1 libkivwidgets-qt6-1; do
        dpkg-deb -I "$scratch"/packages/${name}_*.deb $file >>"$scratch/linking"
    done
done
grep -q '^libkivwidgets 1 libkivwidgets1 ' "$scratch/linking" || fail "no dependency on the library"
grep -q '^libkivwidgets-qt6 1 libkivwidgets-qt6-1 ' "$scratch/linking" || fail "no dependency for Qt 6"
# Each binary has its debug information in a package beside it.
for name in libkivwidgets1 kivwidgets-designer kivwidgets-accessibility kivconsole kivgallery \
    libkivwidgets-qt6-1 kivwidgets-qt6-designer kivwidgets-qt6-accessibility; do
    dpkg-deb -c "$scratch"/packages/${name}-dbgsym_*.deb | grep -q '/usr/lib/debug/\.build-id/.*\.debug$' ||
        fail "no debug information of $name"
done
for name in libkivwidgets1 libkivwidgets-qt6-1; do
    dpkg-deb -I "$scratch"/packages/${name}_*.deb symbols | grep -q '^ _Z17kivWidgetsVersionv@Base ' ||
        fail "$name has no symbols file"
done
[ -s "$root/usr/share/doc/libkivwidgets-doc/html/index.html" ] || fail "no reference"
field libkivwidgets-doc Architecture all
grep -qx "License: $(sed -n '1s/.*LicenseRef-//p' "$tests/../LICENSE")" "$root/usr/share/doc/libkivwidgets1/copyright" ||
    fail "another licence than that of LICENSE"
grep -q 'ldconfig' "$scratch/linking" || fail "the linker's cache is not renewed"

# Error lines name the sources relative to the repository, and nothing shows where it was built.
library=$root/usr/lib/$triplet/libkivwidgets.so.1
grep -aq 'KivWidgets/aerobutton\.cpp' "$library" || fail "error lines without the source's name"
if grep -aq '/KivWidgets/[a-z]*\.cpp' "$library"; then
    fail "error lines with a directory above the repository's"
fi
if grep -raqF "$(realpath "$tests/..")" "$root"; then
    fail "the build's directory in the packages"
fi

for qt in 5 6; do
    "$tests/check_prefix.sh" "$cmake" "$root/usr" "$tests/host" "$scratch" $qt
done

export LD_LIBRARY_PATH="$root/usr/lib/$triplet" QT_QPA_PLATFORM=offscreen
plugins=$root/usr/lib/$triplet/qt5/plugins
KIV_DESIGNER_PLUGIN=$plugins/designer/libkivwidgetsdesigner.so "$designer_test" \
    >"$scratch/designer.log" 2>&1 || fail "$(cat "$scratch/designer.log")"

# Python finds the packed module, and its forms.
for module in "$root"/usr/lib/python3/dist-packages/kivwidgets/qt?.abi3.so; do
    qt=$(basename "$module" .abi3.so)
    KIVWIDGETS_QT=${qt#qt} PYTHONPATH=$root/usr/lib/python3/dist-packages \
        /usr/bin/python3 -B -m unittest discover -s "$tests/python" -p test_forms.py >"$scratch/python.log" 2>&1 ||
        fail "$(cat "$scratch/python.log")"
done

# draws_images PROGRAM COUNT [OPTION...]: the program prints its version and draws so many images.
draws_images() {
    program=$1
    count=$2
    shift 2
    [ "$("$root/usr/bin/$program" --version)" = "$program ${version%-*}" ] ||
        fail "$program's version"
    QT_PLUGIN_PATH=$plugins "$root/usr/bin/$program" --screenshot "$scratch/$program" "$@" \
        >"$scratch/$program.log"
    [ "$(find "$scratch/$program" -name '*.png' -size +4k | wc -l)" = "$count" ] ||
        fail "$program's images: $(cat "$scratch/$program.log")"
}
draws_images kivconsole 7 --at 30
draws_images kivgallery 1 --widget AeroButton
echo "packed, unpacked, and used"
