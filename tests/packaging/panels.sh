#!/usr/bin/env bash
# What panels load of the program: both extensions of GNOME Shell and the applet of Plasma. Skipped (77) without the
# programs that read them.
set -euo pipefail
extensions=${1:?usage: panels.sh FOLDER-OF-EXTENSIONS [QMLFORMAT]}
here=$(dirname "$0")
command -v node >/dev/null && command -v python3 >/dev/null || exit 77
node "$here/panels.mjs" "$extensions"
module=$(mktemp --suffix=.mjs)
trap 'rm -f "$module"' EXIT
cp "$extensions/nimbara@nimbara.github.io/extension.js" "$module"
node --check "$module"
applet=$here/../../packaging/plasma/io.github.nimbara.Nimbara
python3 - "$extensions"/*/metadata.json "$applet/metadata.json" <<'CHECK'
import json, pathlib, sys
for path in map(pathlib.Path, sys.argv[1:]):
    data = json.loads(path.read_text())
    name = data.get("uuid") or data["KPlugin"]["Id"]
    assert path.parent.name == name, f"{path}: lies in a folder of another name"
CHECK
# Parses the applet; what it imports is a desktop's.
if [ -n "${2:-}" ] && [ -x "$2" ]; then "$2" "$applet/contents/ui/main.qml" >/dev/null; fi
