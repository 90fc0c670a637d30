#!/usr/bin/env bash
# Builds the Debian packages of the tracked files, as they are in the work tree, into build/deb:
#
#   tools/make_deb.sh [--source]        with --source also the source package, which holds the gazetteer's archives
#
# What the build needs of the network is fetched before it begins. Two builds of the same files are equal byte by byte:
# the changelog's date stands for the time, and the folder's path is mapped away. NIMBARA_DEB_SANDBOX names another
# folder to build in, as for comparing two builds.
set -euo pipefail
cd "$(dirname "$0")/.."
kinds=--build=binary
[ "${1-}" != --source ] || kinds=--build=full
version=$(dpkg-parsechangelog --show-field Version)
out=$PWD/build/deb
sandbox=${NIMBARA_DEB_SANDBOX:-$out/work}
tree=$sandbox/nimbara-$version

rm -rf "$tree" "$sandbox/data"
mkdir -p "$tree/downloads" "$out"
git ls-files -z | tar --create --null --files-from=- | tar --extract --directory "$tree"
tools/fetch-gazetteer.sh "$sandbox/data" "$tree/downloads"

(cd "$tree" && dpkg-buildpackage "$kinds" --no-sign --jobs="${JOBS:-$(nproc)}")
mv "$sandbox"/*.deb "$sandbox"/*.changes "$sandbox"/*.buildinfo "$out"
[ "$kinds" = --build=binary ] || mv "$sandbox"/*.dsc "$sandbox"/*.tar.* "$out"
echo "The packages are in build/deb:"
(cd "$out" && ls -- *.deb)
