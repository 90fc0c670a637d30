#!/usr/bin/env bash
# Runs the benchmarks of a build folder; the figures belong into docs/performance.md together with the machine.
set -euo pipefail
build=${1:?usage: bench/run.sh BUILD-FOLDER}
grep -m1 'model name' /proc/cpuinfo
"$build/bench/forecast_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
"$build/bench/nws_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
"$build/bench/gazetteer_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
"$build/bench/feeds_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
"$build/bench/warnings_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
"$build/bench/satellite_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
"$build/bench/notifications_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
[ ! -x "$build/bench/map_bench" ] || "$build/bench/map_bench"
[ ! -x "$build/bench/globe_painted" ] || "$build/bench/globe_painted"
"$build/bench/command_bench" "$build/bin/nimbara"
