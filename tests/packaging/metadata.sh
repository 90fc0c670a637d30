#!/usr/bin/env bash
# The files that a desktop reads of the program are valid. Skipped (77) without the validators.
set -euo pipefail
cd "$(dirname "$0")/../../packaging/desktop"
command -v desktop-file-validate >/dev/null && command -v appstreamcli >/dev/null || exit 77
complaints=$(desktop-file-validate ./*.desktop)
[ -z "$complaints" ] || { echo "$complaints"; exit 1; }
# Warnings are as fatal as they are to software centres.
appstreamcli validate --pedantic --strict --no-net ./*.metainfo.xml
# Every language that the program speaks has its lines.
for text in ../../resources/texts/*.json; do
  language=$(basename "$text" .json)
  [ "$language" != en ] || continue
  grep -q "^Name\[$language\]=" ./*.desktop && grep -q "^Comment\[$language\]=" ./*.desktop &&
    grep -q "<summary xml:lang=\"$language\">" ./*.metainfo.xml || { echo "nothing in $language"; exit 1; }
done
