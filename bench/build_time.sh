#!/usr/bin/env bash
# How long the steps of a build took, from the build's own log: seconds summed by folder, the twenty longest steps, and
# what the command line alone needs. Meaningful for a build without the compiler's cache on a machine at rest:
#
#   tools/configure.sh release desktop tests && CCACHE_DISABLE=1 cmake --build --preset release && bench/build_time.sh
set -euo pipefail
build=${1:-build/release}
log=$build/.ninja_log
[ -f "$log" ] || { echo "build_time: there is no build in $build" >&2; exit 1; }

# A step with several outputs has a line for each; a step that ran twice counts by its last run.
steps=$(mktemp)
needed=$(mktemp)
trap 'rm -f "$steps" "$needed"' EXIT
grep -v '^#' "$log" | awk -F'\t' '{ seconds[$4] = ($2 - $1) / 1000; step[$4] = $1 " " $2 " " $5 }
  END { for (output in seconds) if (!done[step[output]]++) printf "%.1f\t%s\n", seconds[output], output }' >"$steps"

echo "seconds  folder"
sed -E 's#CMakeFiles/##; s#\.dir/#/#' "$steps" | awk -F'\t' '{
    split($2, part, "/"); folder = part[1] == "src" || part[1] == "tests" || part[1] == "tools" ? part[1] "/" part[2] : part[1]
    if (substr($2, 1, 1) == "/") folder = "configuring"
    sum[folder] += $1; all += $1
  } END { for (f in sum) printf "%7.0f  %s\n", sum[f], f; printf "%7.0f  everything\n", all }' | sort -rn

ninja -C "$build" -t inputs nimbara 2>/dev/null | sort -u >"$needed" || true
awk -F'\t' 'NR == FNR { needed[$1] = 1; next } $2 in needed || $2 == "bin/nimbara" { sum += $1 }
  END { printf "%7.0f  what the command line needs\n", sum }' "$needed" "$steps"

echo
echo "the longest steps"
sort -rn "$steps" | head -20 | awk -F'\t' '{ printf "%7.1f  %s\n", $1, $2 }'
