#!/usr/bin/env bash
# commands.sh PAGE: checks the commands and outputs of a page. Runs its "sh" blocks in one shell, with a home of its own, in a
# tree as scripts/test leaves it. The lines of a "text" block must appear in the output of the block before it, in order; other
# lines may come in between, and one "…" in a line matches any text. CMakeLists.txt sets SOURCE_DIR and BUILD_DIR.
set -euo pipefail

work=$(mktemp -d "${TMPDIR:-/tmp}/vesk-docs.XXXXXX")
commands=
# timeout puts the processes of the page into a group.
trap 'kill -KILL -- "-$commands" 2>/dev/null || true; rm -rf "$work"' EXIT
mkdir -p "$work/home" "$work/runtime" "$work/tree/build"
for entry in "$SOURCE_DIR"/*; do
  [ "$(basename "$entry")" = build ] || ln -s "$entry" "$work/tree/"
done
ln -s "$BUILD_DIR" "$work/tree/build/release"

block=0
expected=()
: >"$work/script"
while IFS= read -r line; do
  case $line in
    '```sh')
      block=$((block + 1))
      echo "{ echo '== block $block' >&3" >>"$work/script"
      while IFS= read -r line && [ "$line" != '```' ]; do printf '%s\n' "$line" >>"$work/script"; done
      echo "} >'$work/out.$block' 2>&1" >>"$work/script"
      ;;
    '```text')
      [ "$block" -gt 0 ] || { echo "$1: an output without commands"; exit 1; }
      expected+=("$block")
      while IFS= read -r line && [ "$line" != '```' ]; do printf '%s\n' "$line"; done >"$work/expected.$block"
      ;;
  esac
done <"$SOURCE_DIR/$1"
if [ "$block" -eq 0 ] || [ ${#expected[@]} -eq 0 ]; then
  echo "$1: no commands, or no output"
  exit 1
fi

cd "$work/tree"
HOME=$work/home BINDER_RUNTIME_DIR=$work/runtime timeout 300 bash -eu "$work/script" 3>&1 &
commands=$!
status=0
wait "$commands" || status=$?
if [ "$status" -ne 0 ]; then
  echo "$1: the commands failed with $status"
  tail -n +1 "$work"/out.*
  exit 1
fi

# matches LINE WANTED
matches() {
  [[ $1 == "$2" || ($2 == *…* && $1 == "${2%%…*}"*"${2##*…}") ]]
}

for block in "${expected[@]}"; do
  exec {output}<"$work/out.$block"
  while IFS= read -r wanted; do
    [ "$wanted" != ... ] || continue
    while true; do
      IFS= read -r -u "$output" line || { echo "$1: '$wanted' is missing in:"; cat "$work/out.$block"; exit 1; }
      ! matches "$line" "$wanted" || break
    done
  done <"$work/expected.$block"
  exec {output}<&-
done
