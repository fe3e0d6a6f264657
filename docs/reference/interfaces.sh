#!/usr/bin/env bash
# docs/reference/interfaces.sh INCLUDE: prints a page with the methods of all interfaces.
set -euo pipefail

echo '/** @page interfaces Methods of the interfaces'
echo
echo 'A reply contains the last result first, then the others in their order.'
for table in "$1"/com/qv/*.def; do
  name=$(basename "$table" .def)
  printf '\n@section interface_%s I%s\n\n' "$name" "$name"
  echo '| Code | Method | Arguments | Results |'
  echo '|---:|---|---|---|'
  # A row becomes: code|name|"(type, name), (type, name)..."
  cpp -P -DMETHOD'(code,name,...)=code|name|#__VA_ARGS__' "$table" | awk -F '|' '
    /^ *[0-9]/ {
      gsub(/"|^\(|\)$/, "", $3)
      sub(/^ *\(/, "", $3)
      sub(/\) *$/, "", $3)
      ins = outs = ""
      count = split($3, parameters, /\), *\(/)
      for (i = 1; i <= count; ++i) {
        name = type = parameters[i]
        sub(/.*, */, "", name)
        sub(/, *[^,]*$/, "", type)
        out = sub(/\*$/, "", type)
        gsub(/const |&$/, "", type)
        gsub(/</, "\\<", type)
        gsub(/>/, "\\>", type)
        gsub(/::/, "\\::", type)
        both = type " *" name "*"
        if (out) outs = outs (outs == "" ? "" : ", ") both
        else ins = ins (ins == "" ? "" : ", ") both
      }
      gsub(/ /, "", $1)
      print "| " $1 " | " $2 " | " ins " | " outs " |"
    }'
done
echo '*/'
