#!/usr/bin/env bash
# Installs a build into a folder and runs it from there: the programs find their modules, sounds and each other, and
# the bus starts the window that somebody calls. Skipped (77) without a bus.
set -euo pipefail
build=${1:?usage: install.sh BUILD-FOLDER CMAKE}
cmake=${2:?usage: install.sh BUILD-FOLDER CMAKE}
command -v dbus-daemon >/dev/null && command -v dbus-send >/dev/null || exit 77
folder=$(mktemp -d)
bus=
window=
watch=
ended() { # who still writes into the folder is waited for
  for process in $watch $window $bus; do
    kill "$process" 2>/dev/null && timeout 10 tail --pid="$process" -f /dev/null || true
  done
  rm -rf "$folder"
}
trap ended EXIT
fail() { echo "$*" >&2; exit 1; }

prefix="$folder/the prefix"
"$cmake" --install "$build" --prefix "$prefix" >/dev/null
export HOME=$folder XDG_DATA_HOME=$folder/data XDG_CACHE_HOME=$folder/cache XDG_CONFIG_HOME=$folder/config
export XDG_RUNTIME_DIR=$folder/run QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software LC_ALL=C.UTF-8
export https_proxy=http://127.0.0.1:9 http_proxy=http://127.0.0.1:9
unset NIMBARA_SERVICES NIMBARA_NOW XDG_ACTIVATION_TOKEN DESKTOP_STARTUP_ID
mkdir -m 700 "$folder/run"

for file in lib/nimbara/nimbara-dbus.so lib/nimbara/nimbara-http.so share/nimbara/sounds/rain_alert.wav \
  share/applications/io.github.nimbara.Nimbara.desktop share/metainfo/io.github.nimbara.Nimbara.metainfo.xml \
  share/icons/hicolor/scalable/apps/io.github.nimbara.Nimbara.svg \
  share/icons/hicolor/symbolic/apps/io.github.nimbara.Nimbara-symbolic.svg \
  share/krunner/dbusplugins/io.github.nimbara.Nimbara.desktop \
  share/gnome-shell/search-providers/io.github.nimbara.Nimbara.search-provider.ini \
  share/plasma/plasmoids/io.github.nimbara.Nimbara/contents/ui/main.qml \
  share/gnome-shell/extensions/nimbara@nimbara.github.io/extension.js \
  share/gnome-shell/extensions/nimbara-43@nimbara.github.io/metadata.json \
  share/dbus-1/interfaces/io.github.nimbara.Nimbara.Service.xml lib/systemd/user/nimbara-watch.service; do
  [ -s "$prefix/$file" ] || fail "not installed: $file"
done

"$(dirname "$0")/claimed.sh" "$prefix" || fail "the Debian packages lack a file or name too many"

# The manual formats without a complaint, and a shell completes commands, values and places.
for page in nimbara nimbara-forecast nimbara-satellites nimbara-desktop; do
  [ -s "$prefix/share/man/man1/$page.1" ] || fail "not installed: $page.1"
done
if command -v groff >/dev/null; then
  complaints=$(groff -man -ww -z -Tutf8 "$prefix"/share/man/man1/*.1 2>&1)
  [ -z "$complaints" ] || fail "the manual: $complaints"
fi
completed() { # WORD...: what bash offers for the last word
  COMP_WORDS=("$prefix/bin/nimbara" "$@") COMP_CWORD=$# COMPREPLY=()
  _nimbara
  echo "${COMPREPLY[*]}"
}
source "$prefix/share/bash-completion/completions/nimbara"
"$prefix/bin/nimbara" places add 40.1,-3.2 --name "My hut" >/dev/null
[ "$(completed forec)" = forecast ] || fail "no completion of a command: $(completed forec)"
[ "$(completed settings set language d)" = de ] || fail "no completion of a value"
[ "$(completed forecast My)" = 'My\ hut' ] || fail "no completion of a saved place: $(completed forecast My)"
[[ $(completed forecast Reykjav) = Reykjav* ]] || fail "no completion of a city"

# The module of HTTP, the demo beside the program, and the pages.
env -u http_proxy "$prefix/bin/nimbara" demo -- "$prefix/bin/nimbara" forecast Oslo --no-cache >"$folder/page" ||
  fail "no forecast from the installed program"
grep -q 'Oslo' "$folder/page" || fail "the forecast says nothing"
env -u http_proxy "$prefix/bin/nimbara-desktop" --demo --screenshot "$folder/window.png"
[ -s "$folder/window.png" ] || fail "no picture of the window"

# A bus that knows the installed services alone.
cat >"$folder/bus.conf" <<CONF
<busconfig><type>session</type><listen>unix:path=$folder/run/bus</listen><auth>EXTERNAL</auth>
<servicedir>$prefix/share/dbus-1/services</servicedir>
<policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy></busconfig>
CONF
exec {address}< <(exec dbus-daemon --config-file="$folder/bus.conf" --nofork --print-address=1 2>/dev/null)
bus=$!
read -r -t 20 DBUS_SESSION_BUS_ADDRESS <&"$address"
export DBUS_SESSION_BUS_ADDRESS

call() {
  dbus-send --session --print-reply=literal --reply-timeout=20000 "$@"
}
call --dest=org.freedesktop.DBus / org.freedesktop.DBus.StartServiceByName string:io.github.nimbara.Nimbara uint32:0 \
  >/dev/null || fail "the bus cannot start the window"
window=$(call --dest=org.freedesktop.DBus / org.freedesktop.DBus.GetConnectionUnixProcessID \
  string:io.github.nimbara.Nimbara | awk '{ print $2 }')
[ "$(readlink "/proc/$window/exe")" = "$prefix/bin/nimbara-desktop" ] || fail "the bus started something else"
# A second start hands over and ends well.
"$prefix/bin/nimbara-desktop" --page places || fail "the second start failed"

# Who asks for the weather or searches the desktop starts the watch, which answers at once.
service=io.github.nimbara.Nimbara.Service
call --dest=org.freedesktop.DBus / org.freedesktop.DBus.StartServiceByName string:$service uint32:0 >/dev/null ||
  fail "the bus cannot start the watch"
watch=$(call --dest=org.freedesktop.DBus / org.freedesktop.DBus.GetConnectionUnixProcessID string:$service |
  awk '{ print $2 }')
[ "$(readlink "/proc/$watch/exe")" = "$prefix/bin/nimbara" ] || fail "the bus started something else than the watch"
call --dest=$service /io/github/nimbara/Nimbara/Service $service.Places | grep -q 'My hut' || fail "the service has no places"
runner=$(sed -n 's/^X-Plasma-DBusRunner-Path=//p' "$prefix"/share/krunner/dbusplugins/*.desktop)
call --dest=$service "$runner" org.kde.krunner1.Match string:'wetter lissabon' | grep -qi 'lis' || fail "no match"
