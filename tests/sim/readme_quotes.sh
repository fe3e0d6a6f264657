#!/usr/bin/env bash
# readme_quotes.sh ROOT: what the README quotes from a file is what stands in that file.
set -euo pipefail
cd "$1"

quotes=0
file=
while IFS= read -r line; do
  case $line in
    '[examples/'*'):') file=${line#\[} file=${file%%]*} ;;
    '```c' | '```cpp')
      [ -n "$file" ] || { echo "a quotation without its file's name before it"; exit 1; }
      quote=
      while IFS= read -r line && [ "$line" != '```' ]; do quote+=$line$'\n'; done
      diff -u "$file" <(printf '%s' "$quote")
      quotes=$((quotes + 1))
      file=
      ;;
  esac
done <README.md
[ "$quotes" -eq 2 ] || { echo "$quotes quotations, not 2"; exit 1; }
