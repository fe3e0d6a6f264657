#!/usr/bin/env bash
# quotes.sh ROOT: checks that the quotations in the README and the guides match their files. A quotation is a block of C or C++
# after a line that ends with a link to the file and a colon.
set -euo pipefail
cd "$1"

link='\[(examples/[^]]*)\]\([^)]*\):$'
for page in README.md docs/guide-*.md; do
  quotes=0
  file=
  while IFS= read -r line; do
    if [[ $line =~ $link ]]; then
      file=${BASH_REMATCH[1]}
    elif [[ $line == '```c' || $line == '```cpp' ]]; then
      [ -n "$file" ] || { echo "$page: a quotation without a link to its file"; exit 1; }
      quote=
      while IFS= read -r line && [ "$line" != '```' ]; do quote+=$line$'\n'; done
      if [[ $'\n'$(<"$file")$'\n' != *$'\n'"$quote"* ]]; then
        echo "$page: this is not in $file:"
        diff -u "$file" <(printf '%s' "$quote") || exit 1
      fi
      quotes=$((quotes + 1))
      file=
    fi
  done <"$page"
  [ "$quotes" -gt 0 ] || { echo "$page: no quotations"; exit 1; }
done
