#!/usr/bin/env bash
# man.sh PROGRAM DIRECTORY: checks that the man page is well-formed and has every command, option, type and exit code.
set -euo pipefail
page="$2/veskctl.1"
# As rendered: without fonts, with plain hyphens.
text=$(sed -e 's/^\.[A-Z]* *//' -e 's/\\f[A-Z]//g' -e 's/\\-/-/g' "$page")

failures=0
fail() {
  echo "FAILED: $*"
  failures=$((failures + 1))
}

help=$("$1" --help)
commands=$(sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p' <<<"$help")
[ "$(wc -w <<<"$commands")" -eq 5 ] || fail "the commands are '$commands'"
options=$(for command in $commands; do "$1" "$command" --help; done | cat - <(echo "$help") | sed -n '/^  -/p' | grep -o -e '--[a-z]*' | sort -u)
[ "$(wc -w <<<"$options")" -ge 6 ] || fail "the options are '$options'"
codes=$(sed -n 's/^  \([0-9]\)  .*/\1/p' <<<"$help")
[ "$(wc -w <<<"$codes")" -eq 7 ] || fail "the exit codes are '$codes'"
types=$("$1" methods | sed -n 's/.*(\(.*\)).*/\1/p' | tr ',' '\n' | awk 'NF { print $1 }' | sort -u)

for command in $commands; do grep -q "^$command\( \|\$\)" <<<"$text" || fail "the manual lacks the command $command"; done
for option in $options; do grep -qe "$option" <<<"$text" || fail "the manual lacks the option $option"; done
for type in $types; do grep -qxF "$type" <<<"$text" || fail "the manual lacks the type $type"; done
for code in $codes; do
  sed -n '/^EXIT STATUS/,/^ENVIRONMENT/p' <<<"$text" | grep -qx "$code" || fail "the manual lacks the exit code $code"
done
documented=$(grep -o -e '--[a-z]\{1,\}' <<<"$text" | sort -u)
for option in $documented; do grep -qxe "$option" <<<"$options" || fail "there is no option $option"; done

if command -v groff >/dev/null; then
  warnings=$(groff -ww -man -Tutf8 "$page" 2>&1 >/dev/null)
  [ -z "$warnings" ] || fail "$warnings"
fi
[ "$failures" -eq 0 ]
