#!/bin/sh
# Copies Nimbara from the folder of this script into PREFIX (~/.local), with its entry in the desktop's menu.
# Nimbara also runs from where it was unpacked: bin/nimbara, bin/nimbara-desktop.
set -eu
prefix=${1:-$HOME/.local}
mkdir -p "$prefix"
prefix=$(cd "$prefix" && pwd)
cd "$(dirname "$0")"
cp -R bin lib share "$prefix/"
escaped=$(printf '%s' "$prefix" | sed 's/[&#\\]/\\&/g')
fill() { # TEMPLATE PROGRAM FOLDER
  mkdir -p "$prefix/$3"
  sed "/^@unit@$/d; s#@program@#$escaped/bin/$2#" "templates/$1.in" >"$prefix/$3/$1"
}
fill io.github.nimbara.Nimbara.service nimbara-desktop share/dbus-1/services
fill io.github.nimbara.Nimbara.Service.service nimbara share/dbus-1/services
fill nimbara-watch.service nimbara share/systemd/user
echo "Installed in $prefix. If $prefix/bin is not in your PATH, add it."
