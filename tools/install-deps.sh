#!/usr/bin/env bash
# Installs what a piece of work needs from Debian 12's packages, and nothing when all is there:
#
#   tools/install-deps.sh [GROUP...]     run, desktop, test, bench, lint, fuzz, deb; without a group, all but the last
#
# Groups that stand on others bring them: test brings desktop, desktop brings run. The one place that names the
# packages; sudo is used only when the caller is not root.
set -euo pipefail

declare -A packages=(
  # the command line, the watch, the relay and the demo
  [run]="g++ cmake ninja-build ccache pkg-config git
    libcurl4-openssl-dev libsimdjson-dev libicu-dev libssl-dev libfmt-dev libcli11-dev libcpp-httplib-dev
    libsqlite3-dev libsdbus-c++-dev libexpat1-dev nettle-dev zlib1g-dev libspeechd-dev tzdata"
  # the window
  [desktop]="qt6-base-dev qt6-declarative-dev qt6-declarative-private-dev qt6-declarative-dev-tools qml6-module-qtqml
    qml6-module-qtqml-models qml6-module-qtqml-workerscript qml6-module-qtquick qml6-module-qtquick-controls
    qml6-module-qtquick-layouts qml6-module-qtquick-templates qml6-module-qtquick-window qt6-shadertools-dev
    qt6-quick3d-dev qml6-module-quick3d libxcb1-dev fonts-noto-core"
  [test]="libgl1-mesa-dri xvfb xauth dbus-daemon dbus-bin desktop-file-utils appstream python3 python3-jsonschema libgtest-dev libgmock-dev
    fonts-noto-cjk"
  [bench]="libbenchmark-dev nlohmann-json3-dev"
  [lint]="clang-format-19 clang-tidy-22"
  [fuzz]="clang-19 libclang-rt-19-dev"
  # the packages, and the root in which they are tried
  [deb]="debhelper dpkg-dev lintian mmdebstrap iproute2"
)
declare -A brings=([desktop]="run" [test]="desktop run" [bench]="test desktop run" [lint]="" [fuzz]="desktop run" [deb]="")

groups=("$@")
[ $# -gt 0 ] || groups=(run desktop test bench lint fuzz)
wanted=()
for group in "${groups[@]}"; do
  if [ -z "${packages[$group]-}" ]; then
    echo "install-deps: there is no group '$group'; choose from: run desktop test bench lint fuzz deb" >&2
    exit 2
  fi
  for name in "$group" ${brings[$group]-}; do
    for package in ${packages[$name]}; do wanted+=("$package"); done
  done
done
# npm fetches the gazetteer's data; the machine may have one of its own.
command -v npm >/dev/null || [[ "${groups[*]}" =~ ^(lint|deb)$ ]] || wanted+=(npm)

mapfile -t missing < <(
  printf '%s\n' "${wanted[@]}" | sort -u | while read -r package; do
    state=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$state" = installed ] || echo "$package"
  done
)
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "install-deps: not root and no sudo; please install: ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi
echo "Installing from Debian's packages: ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
