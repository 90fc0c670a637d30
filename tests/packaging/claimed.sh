#!/usr/bin/env bash
# Every file of an installed PREFIX belongs to exactly one Debian package, every line of debian/*.install to a file,
# and the packages have the version of the build.
set -euo pipefail
prefix=${1:?usage: claimed.sh PREFIX}
cd "$(dirname "$0")/../.."
patterns=()
while read -r pattern _; do patterns+=("${pattern#debian/tmp/}"); done < <(cat debian/*.install debian/*.manpages)

used=()
wrong=0
while IFS= read -r file; do
  count=0
  for i in "${!patterns[@]}"; do
    # shellcheck disable=SC2053  # the right side is a pattern
    [[ usr/$file == ${patterns[i]} || usr/$file == ${patterns[i]}/* ]] || continue
    count=$((count + 1)) used[i]=yes
  done
  [ $count = 1 ] || { echo "in $count packages: $file"; wrong=1; }
done < <(cd "$prefix" && find . -type f -printf '%P\n')
for i in "${!patterns[@]}"; do
  [ -n "${used[i]-}" ] || { echo "debian names what is not installed: ${patterns[i]}"; wrong=1; }
done
version=$(sed -n 's/^project(nimbara VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
grep -q "^nimbara ($version)" debian/changelog || { echo "debian/changelog is not of version $version"; wrong=1; }
exit $wrong
