#!/usr/bin/env bash
# Checks that the pages show texts by the components that read no markup.
set -euo pipefail
cd "$(dirname "$0")/../src/desktop/qml"

wrong=0
complain() {
  while IFS=: read -r file line rest; do
    [ -n "$file" ] || continue
    echo "src/desktop/qml/$file:$line: $1"
    wrong=1
  done < <(grep -nE --exclude=PlainText.qml --exclude=MarkedText.qml "$2" -- *.qml || true)
}

complain "use PlainText, or MarkedText where a line has a lead" \
  '(^|[^A-Za-z])(Text|TextEdit|TextArea|Label|ToolTip|T\.Label|C\.Label) *\{|ToolTip\.text'
complain "markup is written by MarkedText alone" 'textFormat|Text\.(StyledText|RichText|MarkdownText|AutoText)'
complain "give the button a content item: its own reads markup" \
  '(^|[^A-Za-z.])(Button|CheckBox|RadioButton|MenuItem|TabButton|ToolButton|RoundButton|GroupBox|Dialog) *\{'
exit $wrong
