#!/usr/bin/env bash
# Checks that every folder of src/ includes only from the folders that it stands on, and every room in a folder only
# from the rooms that it stands on. What lies in the folder itself serves its rooms or puts them together. No two headers
# declare types of one name.
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
  [desktop]="base platform model providers gazetteer regions feeds notifications globe app demo desktop"
)

declare -A rooms=(
  [analysis/alerts]="brief"
  [base/json]="text time"
  [base/time]="files text"
  [base/words]="json text time"
  [app/engine]="notices places services settings state words"
  [app/notices]="places services settings words"
  [app/places]="settings"
  [app/recording]="notices"
  [app/services]="places settings"
  [app/state]="places services settings words"
  [platform/linux]="http session settings"
  [providers/metnorway]="common"
  [providers/openmeteo]="common"
  [providers/weatherkit]="common"
  [providers/wttr]="common"
  [feeds/air]="fetching"
  [feeds/alerts]="awareness cap fetching nws regions"
  [feeds/brightsky]="cap fetching"
  [feeds/cap]="fetching"
  [feeds/climate]="fetching"
  [feeds/eccc]="cap fetching"
  [feeds/fires]="fetching"
  [feeds/fpas]="cap fetching"
  [feeds/imagery]="fetching"
  [feeds/metalerts]="cap fetching"
  [feeds/meteoalarm]="alerts awareness cap fetching regions"
  [feeds/nowcast]="fetching"
  [feeds/nws]="cap fetching"
  [feeds/outlook]="fetching"
  [feeds/quakes]="fetching"
  [feeds/space]="fetching"
  [feeds/stations]="fetching"
  [feeds/storms]="fetching"
  [feeds/travel]="fetching"
  [feeds/wmo]="cap fetching"
  [notifications/custom]="rules sky"
  [notifications/engine]="custom log rules"
  [notifications/log]="rules"
  [notifications/sky]="rules"
  [demo/feeds]="world"
  [demo/forecasts]="world"
  [cli/commands]="options pages service shell"
  [cli/service]="pages"
  [desktop/core]="views"
  [desktop/imagery]="views"
  [desktop/window]="core imagery scene views"
)

wrong=0
for folder in "${!may[@]}"; do
  while IFS=: read -r file line included; do
    case " ${may[$folder]} " in
      *" $included "*) ;;
      *) echo "src/$file:$line: $folder must not include from $included"; wrong=1 ;;
    esac
  done < <(grep -rnoP --include='*.h' --include='*.cpp' '(?<=#include ")[a-z]+(?=/)' "$folder" || true)
  for room in $(find "$folder" -mindepth 1 -maxdepth 1 -type d -printf '%f\n'); do
    while IFS=: read -r file line included; do
      case " $room ${rooms[$folder/$room]-} " in
        *" $included "*) ;;
        *) echo "src/$file:$line: $folder/$room must not include from $folder/$included"; wrong=1 ;;
      esac
    done < <(grep -rnoP --include='*.h' --include='*.cpp' "(?<=#include \"$folder/)[a-z_]+(?=/)" "$folder/$room" || true)
  done
done

# Two types of one name in one namespace are one to the linker, which keeps the code of either for both.
twins=$(grep -rHP --include='*.h' '^(namespace [a-z_:]+ \{|(struct|class|enum class|union) \w+[^;]*\{)' . |
  awk -F: '{ file = $1; line = substr($0, length(file) + 2) }
    line ~ /^namespace/ { split(line, word, /[ {]/); space[file] = word[2]; next }
    { n = split(line, word, / /); name = word[1] == "enum" ? word[3] : word[2]
      key = space[file] "::" name
      if (key in seen && seen[key] != file) print file ": " key " is also the name of a type in " seen[key]
      seen[key] = file }')
[ -z "$twins" ] || { echo "$twins"; wrong=1; }
exit $wrong
