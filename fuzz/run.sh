#!/usr/bin/env bash
# Runs every fuzz target of a build folder for a bounded time, beginning with the recorded answers when they are named.
set -euo pipefail
build=${1:?usage: fuzz/run.sh BUILD-FOLDER [SECONDS]}
seconds=${2:-60}
# Which service's recorded answers a target begins with.
declare -A samples=([air_quality]=open-meteo-air-quality [cap]=cap [firms]=firms [nhc]=nhc [apple_weather]=weatherkit [elements]=tle [meteo_alarm]=meteoalarm [outlines]=usgs [nws]=nws [swpc]=swpc [usgs]=usgs [open_meteo]=open-meteo [records]=open-meteo [wttr]=wttr [yr_no]=met-norway)
for target in "$build"/fuzz/fuzz_*; do
  [ -x "$target" ] && [ ! -d "$target" ] || continue
  corpus=$build/corpus/$(basename "$target")
  mkdir -p "$corpus"
  seeds=()
  [ -z "${NIMBARA_SAMPLES:-}" ] || seeds=("$NIMBARA_SAMPLES/${samples[${target##*/fuzz_}]:-open-meteo}")
  "$target" -max_total_time="$seconds" -max_len=262144 -print_final_stats=1 "$corpus" "${seeds[@]}"
done
