#!/usr/bin/env bash
# completion.sh PROGRAM DIRECTORY: checks the candidates that bash offers at the end of command lines.
set -euo pipefail
program=$(realpath "$1")
# shellcheck disable=SC1091
source "$2/veskctl.bash"
complete -p veskctl >/dev/null

failures=0

# expect LINE CANDIDATES: splits the line as readline does. The candidates are separated by |.
expect() {
  local line=$1 word rest piece
  COMP_WORDS=()
  COMP_LINE=$line
  for word in $line; do
    rest=$word
    while [ -n "$rest" ]; do
      piece=${rest%%[:=@]*}
      [ -n "$piece" ] || piece=${rest:0:1}
      COMP_WORDS+=("$piece")
      rest=${rest#"$piece"}
    done
  done
  [[ $line != *' ' ]] || COMP_WORDS+=('')
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  COMPREPLY=()
  _veskctl "$program" || true # readline ignores the status
  local got
  got=$(printf '%s|' "${COMPREPLY[@]}")
  if [ "${got%|}" != "$2" ]; then
    echo "FAILED: '$line' gives '${got%|}' instead of '$2'"
    failures=$((failures + 1))
  fi
}

cd "$(mktemp -d)"
touch record.bin record.txt

expect 'veskctl ' 'list|methods|call|watch|ping'
expect 'veskctl l' 'list'
expect 'veskctl --json l' 'list'
expect 'veskctl --timeout ' ''
expect 'veskctl --timeout 3 p' 'ping'
expect 'veskctl --color ' 'auto|always|never'
expect 'veskctl list --js' '--json'
expect 'veskctl call --a' '--at'
expect 'veskctl list --a' ''
expect 'veskctl watch ' 'call|misc|test'
expect 'veskctl ping c' 'call|config'
expect 'veskctl methods call' 'call|call-events'
expect 'veskctl call r' 'relay'
expect 'veskctl call --at some.name mi' 'misc|misc-events'
expect 'veskctl call call makeA' 'makeAvCall'
expect 'veskctl call config setSoftkey' \
  'setSoftkeyList(int32 value, string list) -> int32 result|setSoftkey(int32 value) -> int32 result'
expect 'veskctl call call makeCall ' '<int32 line>| '
expect 'veskctl call call 14 1 ' '<string number>| '
expect 'veskctl call call makeCall 1 200 ' ''
expect 'veskctl call call setCallHoldStatus 1 ' 'true|false'
expect 'veskctl call call setCallHoldStatus 1 t' 'true'
expect 'veskctl call misc registerMiscEventListener ' '-|@watch'
expect 'veskctl call misc registerMiscEventListener @w' '@watch'
expect 'veskctl call relay relaySetAct ' '@|hex:|zero:'
expect 'veskctl call relay relaySetAct @rec' '@record.bin|@record.txt'
expect 'veskctl call call setVideoDisplayArea 1 zero:16 h' 'hex:'
expect 'veskctl call config setHotLineModel @record.bin ' '<int32 value>| '
expect 'veskctl call nothing ' ''

rm -f record.bin record.txt
rmdir "$PWD"
[ "$failures" -eq 0 ]
