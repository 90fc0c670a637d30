#!/usr/bin/env bash
# Lists the C++ sources that git tracks or would track; with "cpp", only those of the
# programs that are compiled on their own.
set -euo pipefail
cd "$(dirname "$0")/.."
patterns=('*.cpp' '*.h')
[ "${1:-}" != cpp ] || patterns=('src/*.cpp' 'tools/*.cpp')
git ls-files --cached --others --exclude-standard -- "${patterns[@]}"
