#!/usr/bin/env bash
# Makes the pictures that the metainfo names, from the demo at one moment, in the size that software centres ask for:
#
#   tools/screenshots.sh BUILD FOLDER
set -euo pipefail
bin=${1:?usage: screenshots.sh BUILD FOLDER}/bin
folder=${2:?usage: screenshots.sh BUILD FOLDER}
mkdir -p "$folder"
export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software LC_ALL=C.UTF-8
while read -r page theme; do
  "$bin/nimbara-desktop" --demo --now 2026-11-21T09:20:00Z --page "$page" --theme "$theme" --size 1600x900 \
    --screenshot "$folder/$page.png"
  echo "$folder/$page.png"
done <<PAGES
now light
hours light
hazards light
map dark
globe dark
PAGES
