#!/usr/bin/env bash
# From the start of the process to the first frame: the window with a kept forecast and no service to be reached,
# in turns with an empty window of the same toolkit. Offscreen, software rendering. Medians in milliseconds.
set -euo pipefail
# With a session bus of its own, as on a desktop.
[ -n "${NIMBARA_BENCH_BUS:-}" ] || NIMBARA_BENCH_BUS=1 exec dbus-run-session -- "$0" "$@"
build=${1:?usage: bench/desktop_start.sh BUILD-FOLDER [RUNS]}
runs=${2:-18}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export HOME=$folder XDG_DATA_HOME=$folder/data XDG_CACHE_HOME=$folder/cache XDG_RUNTIME_DIR=$folder/run
export XDG_CONFIG_HOME=$folder/config LC_ALL=C.UTF-8
export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software
export QT_LOGGING_RULES='*.debug=false;qt.scenegraph.time.renderloop.debug=true'
# Nobody listens on the discard port.
export https_proxy=http://127.0.0.1:9 http_proxy=http://127.0.0.1:9
mkdir -m 700 "$folder/run"
# The machine's fonts are in its cache, as they are on a desktop.
fc-cache >/dev/null 2>&1 || true

prepare() {
  "$build/bin/nimbara" places add 52.52,13.41 --name Berlin >/dev/null
  # The demo gives a command folders of its own; here the window shall find what was fetched.
  env -u http_proxy "$build/bin/nimbara" demo -- env XDG_CACHE_HOME="$XDG_CACHE_HOME" XDG_DATA_HOME="$XDG_DATA_HOME" \
    "$build/bin/nimbara" forecast Berlin >/dev/null
  # As if the services themselves had answered: runs that ask them show nothing made up.
  sed -i 's/"_nimbaraStandIn":true/"_nimbaraStandIn":false/' "$folder"/cache/Nimbara/*.json
}

# Microseconds until the toolkit tells of a frame, the processor time of those threads that the frame waits for (the
# window's own and the one that reads the pages), which says more than the clock on a busy machine, and the kilobytes
# that the process holds then.
first_frame() {
  local begun=$EPOCHREALTIME line ended held worked pid
  coproc WINDOW { exec "$@" 2>&1 >/dev/null; }
  pid=$WINDOW_PID
  ended=
  while read -r -t 20 line <&"${WINDOW[0]}"; do
    case $line in *"Frame rendered"*) ended=$EPOCHREALTIME; break ;; esac
  done
  worked=$(for task in /proc/"$pid"/task/*; do
    [ "${task##*/}" = "$pid" ] || grep -q QmlThread "$task/comm" || continue
    cat "$task/schedstat"
  done | awk '{ sum += $1 } END { print int(sum / 1000) }')
  held=$(awk '/^VmRSS/ { print $2 }' "/proc/$pid/status")
  kill -KILL "$pid"
  wait "$pid" 2>/dev/null || true
  [ -n "$ended" ] || { echo "no frame: $*" >&2; exit 1; }
  echo "$(( ${ended/./} - ${begun/./} )) $worked $held"
}

median() { awk -v field="$2" '{ print $field }' "$folder/$1" | sort -n | awk '{ list[NR] = $1 } END { print list[int((NR + 1) / 2)] }'; }

prepare
for ((run = 0; run < runs; ++run)); do
  first_frame "$build/bench/empty_window" >>"$folder/empty"
  first_frame "$build/bin/nimbara-desktop" >>"$folder/program"
done
for what in empty program; do
  awk -v what="$what" -v time="$(median $what 1)" -v worked="$(median $what 2)" -v held="$(median $what 3)" \
    'BEGIN { printf "%-8s %6.1f ms, %6.1f ms of processor time, %5.1f MB\n", what, time / 1000, worked / 1000, held / 1024 }'
done
awk -v empty="$(median empty 1)" -v program="$(median program 1)" \
  -v emptyWork="$(median empty 2)" -v programWork="$(median program 2)" \
  'BEGIN { printf "the window takes %.2f times as long as an empty one; %.2f times of the processor\n",
           program / empty, programWork / emptyWork }'
