#!/bin/bash
# Changes one token at a time in what decides, and counts how many of these faults the tests notice.
#
#   tools/mutants.sh [-n STEP] [-m TEXT] [-o FILE]
#     -n STEP   tries only every STEP-th row of tools/mutants.tsv
#     -m TEXT   tries only the rows whose file has TEXT in its path
#     -o FILE   writes one line for each mutant there (default: build/mutants/result.tsv)
#
# Each row names a file below src/, a text that stands in it once, and what takes its place. The change is made in a
# copy of the tree (build/mutants/tree), which is built as far as the test programs need it that could notice; they run
# until one test fails. A mutant that does not compile, crashes or hangs counts as dead. A row whose text is no longer
# there is stale: it is listed and not counted. Exit code: 0, or 1 when nothing could be tried.
set -u
cd "$(dirname "$0")/.." || exit 1
step=1 only='' results=build/mutants/result.tsv
while getopts n:m:o: option; do
  case $option in
    n) step=$OPTARG ;;
    m) only=$OPTARG ;;
    o) results=$OPTARG ;;
    *) exit 1 ;;
  esac
done
mkdir -p build/mutants/tree "$(dirname "$results")"
root=$PWD/build/mutants tree=$PWD/build/mutants/tree build=$PWD/build/mutants/tree/build/release
: > "$results"
unset NIMBARA_SAMPLES

# The test programs that could notice a fault in a file, the likeliest first.
programs_of() {
  case $1 in
    analysis/*) echo analysis_tests ;;
    model/*) echo model_tests analysis_tests providers_tests ;;
    notifications/*) echo notifications_tests ;;
    feeds/*) echo feeds_tests ;;
    providers/*) echo providers_tests ;;
    base/*) echo base_tests ;;
    *) echo app_tests ;;
  esac
}

built() { nice -n 10 ninja -C "$build" -j "${NIMBARA_JOBS:-1}" "$@" > "$root/build.log" 2>&1; }

passes() {
  (cd "$build" && nice -n 10 timeout 180 "tests/$1" --gtest_fail_fast --gtest_brief=1) > "$root/test.log" 2>&1
}

# Tries the change that lies in the tree: prints what killed it, or "survived".
verdict() {
  local program
  for program in $(programs_of "$1"); do
    built "$program" || { echo "does not compile"; return; }
    passes "$program" || { grep -m1 -oP '^\[  FAILED  \] \K[^ ,]+' "$root/test.log" || echo "$program ended"; return; }
  done
  echo survived
}

# Only what differs is copied, so that the objects of an earlier run are used again.
git ls-files | while read -r file; do
  [[ -e $file ]] || continue
  cmp -s "$file" "$tree/$file" || install -D --mode="$(stat -c %a "$file")" "$file" "$tree/$file"
done
comm -13 <(git ls-files | while read -r file; do [[ -e $file ]] && echo "$file"; done | sort) \
  <(cd "$tree" && find . -type f -not -path './build/*' -printf '%P\n' | sort) | sed "s|^|$tree/|" | xargs -r rm
cmake -S "$tree" --preset release > "$root/configure.log" 2>&1 || { cat "$root/configure.log"; exit 1; }
row=0
declare -A checked
while IFS=$'\t' read -r file before after; do
  [[ -z $file || $file == \#* || $file != *"$only"* ]] && continue
  ((row++ % step == 0)) || continue
  source=$tree/src/$file
  text=$(cat "$source" 2> /dev/null)
  rest=${text#*"$before"}
  if [[ $rest == "$text" || $rest == *"$before"* ]]; then
    printf '%s\t%s\t%s\tstale\n' "$file" "$before" "$after" >> "$results"
    continue
  fi
  for program in $(programs_of "$file"); do
    [[ -n ${checked[$program]:-} ]] && continue
    built "$program" || { echo "$program does not build unchanged: $root/build.log"; exit 1; }
    passes "$program" || { echo "$program fails unchanged: $root/test.log"; exit 1; }
    checked[$program]=yes
  done
  printf '%s%s%s\n' "${text%%"$before"*}" "$after" "$rest" > "$source"
  printf '%s\t%s\t%s\t%s\n' "$file" "$before" "$after" "$(verdict "$file")" >> "$results"
  printf '%s\n' "$text" > "$source"
done < tools/mutants.tsv

survivors=$(grep -c $'\tsurvived$' "$results") stale=$(grep -c $'\tstale$' "$results")
tried=$(($(wc -l < "$results") - stale))
((tried > 0)) || { echo "No mutant was tried."; exit 1; }
echo "$((tried - survivors)) of $tried mutants died; $survivors survived, $stale rows are stale."
grep -E $'\t(survived|stale)$' "$results" | sed 's/^/  /'
exit 0
