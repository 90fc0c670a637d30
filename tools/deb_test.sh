#!/usr/bin/env bash
# Installs the packages of a folder in a fresh Debian 12 and uses them there as a person does:
#
#   tools/deb_test.sh [FOLDER]          build/deb, where `make deb` puts them
#
# A version before this one is installed first, a user saves a place, the packages are upgraded over it, the programs run
# without network beside the demo, and after removal nothing but the user's data is left. NIMBARA_DEB_BASE names an
# archive of a root that mmdebstrap has made, where one is kept. Root privileges and mmdebstrap are needed; without
# them the packages are unpacked into a folder and their programs run from there, which is said.
set -euo pipefail
folder=$(realpath "${1:-$(dirname "$0")/../build/deb}")
work=$(mktemp -d)
trap 'rm -rf --one-file-system "$work"' EXIT
fail() { echo "deb_test: $*" >&2; exit 1; }

packages=(nimbara nimbara-data nimbara-desktop nimbara-feed-server)
debs=()
for package in "${packages[@]}"; do
  found=("$folder/${package}"_*.deb)
  [ -f "${found[0]}" ] && [ ${#found[@]} = 1 ] || fail "not exactly one package $package in $folder"
  debs+=("${found[0]}")
done
version=$(dpkg-deb --field "${debs[0]}" Version)

if [ "$(id -u)" -ne 0 ] || ! command -v mmdebstrap >/dev/null || ! unshare --mount --pid --fork --net true 2>/dev/null; then
  echo "deb_test: no root or no mmdebstrap: only unpacked, not installed"
  for deb in "${debs[@]}"; do dpkg-deb --extract "$deb" "$work/root"; done
  export HOME=$work/home QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software LC_ALL=C.UTF-8
  unset XDG_DATA_HOME XDG_CACHE_HOME XDG_CONFIG_HOME NIMBARA_SERVICES NIMBARA_NOW
  bin=$work/root/usr/bin
  "$bin/nimbara" demo -- "$bin/nimbara" forecast Tokyo | grep -q Tokyo || fail "no forecast"
  "$bin/nimbara-desktop" --demo --screenshot "$work/window.png" && [ -s "$work/window.png" ] || fail "no picture"
  echo "deb_test: unpacked packages run"
  exit 0
fi

root=$work/root
mkdir "$root"
if [ -n "${NIMBARA_DEB_BASE-}" ]; then
  tar --extract --file "$NIMBARA_DEB_BASE" --directory "$root"
else
  mmdebstrap --quiet --variant=apt bookworm "$root"
fi
cp /etc/resolv.conf "$root/etc/resolv.conf"
mkdir -p "$root/debs/new" "$root/debs/old"
cp "${debs[@]}" "$root/debs/new"
# The version before: the same files, said to be older.
for deb in "${debs[@]}"; do
  dpkg-deb --raw-extract "$deb" "$work/old"
  sed --in-place "s/^Version: .*/Version: $version~before/; s/(= $version)/(= $version~before)/" "$work/old/DEBIAN/control"
  dpkg-deb -Zgzip -z1 --root-owner-group --build "$work/old" "$root/debs/old" >/dev/null
  rm -r "$work/old"
done

# Runs a script in the root: `online` for the package manager; `offline` with nothing but loopback, as a user.
inside() { # online|offline
  local flags=(--mount --pid --fork --kill-child) prefix=()
  [ "$1" = online ] || flags+=(--net)
  [ "$1" = online ] || prefix=(setpriv --reuid ada --regid ada --init-groups)
  cat >"$root/debs/script"
  unshare "${flags[@]}" bash -ec '
    root=$1 kind=$2; shift 2
    mount -t proc proc "$root/proc"
    mount --rbind /dev "$root/dev"
    mount -t tmpfs tmpfs "$root/tmp"
    [ "$kind" = online ] || ip link set lo up
    exec chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
      HOME=/home/ada XDG_RUNTIME_DIR=/home/ada/run QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software "$@"' \
    inside "$root" "$1" "${prefix[@]}" bash -euo pipefail /debs/script
}

inside online <<'SCRIPT' >"$work/log" 2>&1 || { tail -n 30 "$work/log"; fail "the version before cannot be installed"; }
apt-get -qq update
apt-get -qq --no-install-recommends install /debs/old/*.deb man-db bash-completion dbus-daemon dbus-bin desktop-file-utils appstream
useradd --create-home ada
install --directory --owner=ada --mode=700 /home/ada/run
SCRIPT

inside offline <<'SCRIPT' || fail "the version before does not run"
nimbara places add 40.1,-3.2 --name "My hut" >/dev/null
nimbara settings set temperatureUnit fahrenheit >/dev/null
SCRIPT

inside online <<'SCRIPT' >"$work/log" 2>&1 || { tail -n 30 "$work/log"; fail "the upgrade failed"; }
apt-get -qq --no-install-recommends install /debs/new/*.deb
SCRIPT
for package in "${packages[@]}"; do
  installed=$(chroot "$root" dpkg-query --show --showformat='${Version} ${db:Status-Abbrev}' "$package")
  [ "$installed" = "$version ii " ] || fail "$package is $installed after the upgrade"
done

inside offline <<'SCRIPT' || fail "the installed programs do not do their work"
say() { echo "deb_test: $*"; }
[[ $(nimbara places list) == *"My hut"* ]]
[[ $(nimbara settings get temperatureUnit) == *fahrenheit* ]]
say "the user's place and settings outlive the upgrade"
page=$(nimbara demo -- nimbara forecast Tokyo)
[[ $page == *Tokyo* && $page == *"7-day forecast"* ]]
say "nimbara demo -- nimbara forecast Tokyo: $(wc -l <<<"$page") lines"
nimbara-desktop --demo --page now --size 1100x760 --screenshot /home/ada/now.png
nimbara-desktop --demo --page globe --size 1100x760 --screenshot /home/ada/globe.png
for picture in now globe; do [ "$(stat --format=%s "/home/ada/$picture.png")" -gt 20000 ]; done
say "the window's pages now and globe are drawn"
for page in nimbara nimbara-forecast nimbara-desktop nimbara-watch nimbara-feed-server nimbara-demo; do
  man --where "$page" >/dev/null
done
[[ $(man nimbara-forecast) == *forecast* ]]
say "man finds the commands' pages"
desktop-file-validate /usr/share/applications/io.github.nimbara.Nimbara.desktop
appstreamcli validate --no-net /usr/share/metainfo/io.github.nimbara.Nimbara.metainfo.xml >/dev/null
say "the menu's entry and the metainfo are valid"
source /usr/share/bash-completion/completions/nimbara
COMP_WORDS=(nimbara forecast My) COMP_CWORD=2 COMPREPLY=()
_nimbara
[ "${COMPREPLY[*]}" = 'My\ hut' ]
say "bash completes a saved place"
# The bus starts the service that the searches of the desktops ask. What it needs of the network it does without.
ask() { # PATH METHOD ARGUMENT...
  dbus-send --session --print-reply --reply-timeout=20000 --dest=io.github.nimbara.Nimbara.Service "/io/github/nimbara/Nimbara/$1" \
    "${@:2}"
}
export -f ask
dbus-run-session -- bash -euo pipefail -c '
  ask Runner org.kde.krunner1.Match string:"weather lisbon" | grep -q Lisbon
  ask SearchProvider org.gnome.Shell.SearchProvider2.GetInitialResultSet array:string:"weather","lisbon" | grep -q string
  kill "$(dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus / \
    org.freedesktop.DBus.GetConnectionUnixProcessID string:io.github.nimbara.Nimbara.Service | awk "{ print \$2 }")"'
say "KRunner and GNOME Shell find a city"
for library in /usr/bin/nimbara* /usr/lib/nimbara/*.so; do
  if ldd "$library" | grep 'not found'; then exit 1; fi
done
SCRIPT

inside online <<'SCRIPT' >"$work/log" 2>&1 || { tail -n 30 "$work/log"; fail "removal failed"; }
apt-get -qq remove 'nimbara*'
apt-get -qq purge 'nimbara*'
SCRIPT
left=$(cd "$root" && find . -xdev -iname '*nimbara*' -not -path './debs/*' -not -path './home/*' -not -path './var/log/*')
[ -z "$left" ] || fail "left behind: $left"
known=$(chroot "$root" dpkg-query --show 'nimbara*' 2>/dev/null || true)
[ -z "$known" ] || fail "the package manager still knows: $known"
find "$root/home/ada" -iname '*nimbara*' | grep -q . || fail "the user's data is gone"
echo "deb_test: removed and purged; the user's data is left, nothing else"
