#!/usr/bin/env bash
# Checks the window's pages: texts by the components that read no markup and, where a build folder is given, every name
# that a page uses, by the toolkit's linter and what the build describes of the models.
#
#   tools/check-pages.sh [BUILD-FOLDER]
set -euo pipefail
cd "$(dirname "$0")/.."
pages=src/desktop/qml

wrong=0
complain() {
  while IFS=: read -r file line rest; do
    [ -n "$file" ] || continue
    echo "$file:$line: $1"
    wrong=1
  done < <(grep -rnE --include="*.qml" --exclude=PlainText.qml --exclude=MarkedText.qml -- "$2" "$pages" || true)
}

complain "use PlainText, or MarkedText where a line has a lead" \
  '(^|[^A-Za-z])(Text|TextEdit|TextArea|Label|ToolTip|T\.Label|C\.Label) *\{|ToolTip\.text'
complain "markup is written by MarkedText alone" 'textFormat|Text\.(StyledText|RichText|MarkdownText|AutoText)'
complain "give the button a content item: its own reads markup" \
  '(^|[^A-Za-z.])(Button|CheckBox|RadioButton|MenuItem|TabButton|ToolButton|RoundButton|GroupBox|Dialog) *\{'

# The linter takes an identifier of the file, or what a delegate is given, for an unknown name where a component stands
# inside another, and StandardKey; whatever else it does not know is a mistake. What content items hold is there at once.
lint() {
  local build=$1 types=$1/page_types
  mkdir -p "$types/NimbaraPages"
  grep -vE '^(typeinfo|prefer|plugin|classname|linktarget)' "$build/src/desktop/window/qmldir" >"$types/NimbaraPages/qmldir"
  rm -f "$types"/NimbaraPages/*.qml
  find "$PWD/$pages" -name "*.qml" -exec ln -s -t "$types/NimbaraPages/" {} +
  { "${QMLLINT:-/usr/lib/qt6/bin/qmllint}" --deferred-property-id disable -I "$types" "$types"/NimbaraPages/*.qml 2>&1 || true; } |
    awk -v folder="$types/NimbaraPages/" -v shown="$pages/" '
      function known(file, name,    line, found) {
        if (name ~ /^(index|modelData|model|StandardKey)$/) return 1
        while ((getline line < file) > 0) if (line ~ "(^|[ {;])id: *" name "($|[ ;}])" || line ~ "required property [A-Za-z]+ " name "$") found = 1
        close(file)
        return found
      }
      /^(Warning|Error): / {
        split($2, at, ":")
        file = at[1]; what = $0; sub(/^[A-Za-z]+: [^ ]+ /, "", what)
        where = $2; sub(folder, shown, where)
        if (what != "Unqualified access") { print where " " what; next }
        getline code
        name = substr(code, at[3]); sub(/[^A-Za-z0-9_].*/, "", name)
        if (!known(file, name)) print where " nothing is called " name
      }'
}

if [ $# -gt 0 ]; then
  found=$(lint "$1")
  [ -z "$found" ] || { echo "$found"; wrong=1; }
fi
exit $wrong
