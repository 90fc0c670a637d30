#!/usr/bin/env bash
# Plays weeks of the background service (tests/soak) with sleep, lost and new networks, a full disk, a read-only home, a
# clock that jumps and services that hang; a week takes about a minute:
#
#   tools/soak.sh BUILD [WEEKS]
set -euo pipefail
build=${1:?usage: soak.sh BUILD [WEEKS]}
# Each file is written through to the disk, which on a slow one takes longer than all else.
[ ! -w /dev/shm ] || export TMPDIR=${TMPDIR:-/dev/shm}
NIMBARA_SOAK_WEEKS=${2:-1} exec "$build/tests/soak_tests"
