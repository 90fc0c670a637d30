#!/usr/bin/env bash
# Packs a build as an archive that runs from any folder without being installed, tries it there, and leaves it as
# build/nimbara-VERSION-linux-MACHINE.tar.xz:
#
#   tools/make_tarball.sh BUILD
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:?usage: make_tarball.sh BUILD}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "make_tarball: $*" >&2; exit 1; }

version=$(sed -n 's/^project(nimbara VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
name=nimbara-$version-linux-$(uname -m)
tree=$work/$name
cmake --install "$build" --prefix "$tree" --strip >/dev/null
# What names a program by its path is written when the user installs it.
rm -r "$tree/share/dbus-1" "$tree/lib/systemd"
mkdir "$tree/templates"
cp packaging/d{esktop,bus}/*.service.in packaging/systemd/nimbara-watch.service.in "$tree/templates"
cp packaging/tarball/install.sh packaging/tarball/README LICENSE "$tree"

epoch=$(git log -1 --format=%ct)
archive=build/$name.tar.xz
tar --create --directory "$work" --sort=name --owner=0 --group=0 --numeric-owner --mtime="@$epoch" \
  --mode='u+rw,go=rX' "$name" | xz -T0 >"$archive"

elsewhere="$work/another place"
mkdir "$elsewhere"
tar --extract --file "$archive" --directory "$elsewhere" --strip-components=1
run() {
  env -i PATH="$PATH" HOME="$work/home" LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software "$@"
}
run "$elsewhere/bin/nimbara" demo -- "$elsewhere/bin/nimbara" forecast Tokyo | grep -q Tokyo || fail "no forecast"
if [ -x "$elsewhere/bin/nimbara-desktop" ]; then
  run "$elsewhere/bin/nimbara-desktop" --demo --screenshot "$work/window.png" 2>/dev/null
  [ -s "$work/window.png" ] || fail "no picture of the window"
fi
run "$elsewhere/install.sh" "$work/home/pre fix" >/dev/null
grep -qxF "Exec=\"$work/home/pre fix/bin/nimbara-desktop\"" \
  "$work/home/pre fix/share/dbus-1/services/io.github.nimbara.Nimbara.service" || fail "the bus finds no program"
[ ! -e "$work/home/pre fix/templates" ] || fail "more is installed than is needed"
echo "$archive: $(du -h "$archive" | cut -f1)"
