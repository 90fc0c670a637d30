#!/usr/bin/env bash
# Runs every fuzz target of a build folder for a bounded time, beginning with our own seeds (tools/fuzz_seeds.sh) and,
# where they are named, the recorded answers.
set -euo pipefail
build=${1:?usage: fuzz/run.sh BUILD-FOLDER [SECONDS [TARGET]]}
seconds=${2:-60}
# Which service's recorded answers a target begins with.
declare -A samples=([air_quality]=open-meteo-air-quality [bright_sky]=brightsky [cap]=cap [eccc]=eccc [firms]=firms [nhc]=nhc [apple_weather]=weatherkit [elements]=tle [met_alerts]=met-norway [meteo_alarm]=meteoalarm [outlines]=usgs [nowcast]=met-norway [nws]=nws [stations]=netatmo [swpc]=swpc [usgs]=usgs [open_meteo]=open-meteo [radar_lists]=rainviewer [records]=open-meteo [wttr]=wttr [yr_no]=met-norway)
for target in "$build"/fuzz/fuzz_${3:-*}; do
  [ -x "$target" ] && [ ! -d "$target" ] || continue
  corpus=$build/corpus/$(basename "$target")
  mkdir -p "$corpus"
  seeds=()
  own=$(dirname "$0")/seeds/${target##*/fuzz_}
  [ ! -d "$own" ] || seeds=("$own")
  recorded=${samples[${target##*/fuzz_}]-}
  [ -z "${NIMBARA_SAMPLES:-}" ] || [ -z "$recorded" ] || seeds+=("$NIMBARA_SAMPLES/$recorded")
  "$target" -max_total_time="$seconds" -max_len=262144 -print_final_stats=1 "$corpus" "${seeds[@]}"
done
