#!/usr/bin/env bash
# platform_symbols.sh ROOT LIBRARY DIRECTORY: what the library needs of the platform is what docs/device-build.md quotes.
set -euo pipefail
document=$1/docs/device-build.md
# The backquotes are Markdown's.
# shellcheck disable=SC2016
quoted=$(sed -n '/^```text$/,/^```$/p' "$document" | sed '/^```/d')
[ -n "$quoted" ] || { echo "nothing is quoted in $document"; exit 1; }
# Sizes, which are quoted as on the device.
diff -u <(echo "$quoted") <("$1/scripts/platform-symbols" "$2" "$3" | sed 's/unsigned long/unsigned int/g')
