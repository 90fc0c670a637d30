#!/usr/bin/env bash
# Configures build/PRESET so that it holds at least the named parts (desktop, tests, bench), and leaves a folder alone
# that does. Parts are added to what a folder has, never taken away: nothing is compiled twice for it.
#
# A folder that is begun without tests is for using the program: there several sources are compiled as one, which halves
# the first build and lengthens those after a change. NIMBARA_BATCHES=ON or OFF decides otherwise.
#
#   tools/configure.sh PRESET [PART...]
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:?usage: configure.sh PRESET [PART...]}
shift
cache=build/$preset/CMakeCache.txt
has() { grep -qs "^NIMBARA_${1^^}:BOOL=ON$" "$cache"; }

options=()
for part in desktop tests bench; do
  state=OFF
  case " $* " in *" $part "*) state=ON ;; esac
  if has "$part"; then state=ON; fi
  options+=("-DNIMBARA_${part^^}=$state")
  if [ $state = ON ] && ! has "$part"; then changed=yes; fi
done
if [ ! -f "$cache" ]; then
  case " $* " in *" tests "*) batches=OFF ;; *) batches=ON ;; esac
  options+=("-DNIMBARA_BATCHES=${NIMBARA_BATCHES:-$batches}")
fi
[ -f "build/$preset/build.ninja" ] && [ -z "${changed-}" ] && exit 0

log=$(mktemp)
trap 'rm -f "$log"' EXIT
cmake --preset "$preset" "${options[@]}" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
