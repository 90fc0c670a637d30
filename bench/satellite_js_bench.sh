#!/usr/bin/env bash
# Our propagation against satellite.js' WebAssembly in turns, over the demo's near-earth and deep-space element sets. The
# library is fetched into a temporary folder for this measurement alone.
set -euo pipefail
build=$(realpath "${1:?usage: bench/satellite_js_bench.sh BUILD-FOLDER [ROUNDS]}")
rounds=${2:-9}
here=$(dirname "$(realpath "$0")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$here/satellite_js_bench.mjs" "$work"
(cd "$work" && npm install --silent --no-audit --no-fund --ignore-scripts satellite.js@7.1.0)
XDG_CACHE_HOME=$work "$build/bin/nimbara" demo -- "$build/bin/nimbara" satellites list > /dev/null
groups=$work/Nimbara/satellites.stand-in
cat "$groups"/{starlink,oneweb,stations,*-debris}.txt > "$work/near.tle"
cat "$groups"/{galileo,glo-ops}.txt > "$work/deep.tle"
time=$(date -u +%Y-%m-%dT%H:%M:%SZ)
for file in near deep; do
  echo "$file"
  node "$work/satellite_js_bench.mjs" "$build/bin/nimbara" "$work/$file.tle" "$time" "$rounds"
done
