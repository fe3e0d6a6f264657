#!/usr/bin/env bash
# symbols.sh LIBRARY: what the library exports is what its headers declare, and nothing else.
#
# The C functions are compared with the headers in vesk/ in both directions. C++ symbols must belong to com::qv; templates of the
# standard library and other code that every user of it instantiates again (vague linkage) do no harm.
set -euo pipefail
library=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

find "$INCLUDE_DIR/vesk" -name '*.h' -printf '#include "%p"\n' >"$work/all.c"
"$CC" -std=c11 -fsyntax-only -I"$INCLUDE_DIR" -aux-info "$work/declarations" "$work/all.c"
# A line of it: /* FILE:LINE:NC */ extern int binder_make_call (int, const char *);
grep -F "/* $INCLUDE_DIR/vesk/" "$work/declarations" | grep -F '*/ extern' |
  sed -E 's/^[^*]*\* [^*]* \*\/ //; s/^[^(]*[ *]([A-Za-z_][A-Za-z0-9_]*) \(.*/\1/' | sort -u >"$work/declared"

"$NM" -D --defined-only "$library" | awk '{ print $2, $3 }' >"$work/symbols"
awk '$2 !~ /^_Z/ { print $2 }' "$work/symbols" | sort -u >"$work/exported"

failed=0
# report TEXT FILE: names every line of FILE.
report() {
  if [ -s "$2" ]; then
    echo "$1:"
    sed 's/^/  /' "$2"
    failed=1
  fi
}

comm -23 "$work/declared" "$work/exported" >"$work/missing"
comm -13 "$work/declared" "$work/exported" >"$work/undeclared"
report "declared, but not exported" "$work/missing"
report "exported, but not declared" "$work/undeclared"

# T*: virtual table, type information and so on; Th*/Tv*/Tc*: thunks; GV: guard variable.
ours='^_Z(T[VTIS]|GV|Th[n0-9]+_|Tv[n0-9]+_[n0-9]+_|Tc.*_)?N?K?(N?K?3com2qv)'
awk '$2 ~ /^_Z/ && $1 !~ /^[WVu]$/ { print $2 }' "$work/symbols" | { grep -Ev "$ours" || true; } | sort >"$work/others"
# The two functions of <vesk/config.h> that have C++ linkage.
sort >"$work/overloads" <<'NAMES'
_Z30binder_get_screensaver_displayP26ipc_screen_saver_display_t
_Z33binder_get_wlan_log_enable_configv
NAMES
comm -23 "$work/overloads" "$work/others" | c++filt >"$work/missing"
comm -13 "$work/overloads" "$work/others" | c++filt >"$work/foreign"
report "C++ functions that are not exported" "$work/missing"
report "C++ symbols outside of com::qv" "$work/foreign"

echo "$(wc -l <"$work/declared") C functions declared, $(wc -l <"$work/exported") exported," \
  "$(grep -c ' _Z' "$work/symbols") C++ symbols"
if ! [ -s "$work/declared" ]; then
  echo "no declaration was found in $INCLUDE_DIR/vesk"
  failed=1
fi
exit "$failed"
