#!/usr/bin/env bash
# Checks that every folder of src/ includes only from the folders that it stands on.
set -euo pipefail
cd "$(dirname "$0")/../src"

declare -A may=(
  [base]="base"
  [gazetteer]="base gazetteer"
  [regions]="base gazetteer regions"
  [platform]="base platform"
  [model]="base platform model"
  [analysis]="base platform model analysis"
  [providers]="base platform model providers"
  [feeds]="base platform model gazetteer regions feeds"
  [feedserver]="base platform feeds feedserver"
  [notifications]="base platform model analysis feeds notifications"
  [globe]="base platform model globe"
  [app]="base platform model analysis providers gazetteer feeds notifications globe app"
  [demo]="base platform gazetteer globe demo"
  [cli]="base platform model analysis providers gazetteer feeds notifications globe app demo cli"
  [desktop]="base platform model providers gazetteer feeds notifications globe app demo desktop"
)

wrong=0
for folder in "${!may[@]}"; do
  while IFS=: read -r file line included; do
    case " ${may[$folder]} " in
      *" $included "*) ;;
      *) echo "src/$file:$line: $folder must not include from $included"; wrong=1 ;;
    esac
  done < <(grep -rnoP --include='*.h' --include='*.cpp' '(?<=#include ")[a-z]+(?=/)' "$folder" || true)
done
exit $wrong
