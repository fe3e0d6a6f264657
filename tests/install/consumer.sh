#!/usr/bin/env bash
# Installs the built tree, moves it, and builds and runs programs against it as its users would.
set -euo pipefail
source "$(dirname "$0")/lib.sh"

install_to "$work/first"
mv "$work/first" "$work/moved"
prefix="$work/moved"

echo "== find_package"
build "$here/consumer" "$work/build" "-DCMAKE_PREFIX_PATH=$prefix"
"$work/build/application"
"$work/build/service"

echo "== an application gets no platform headers"
if grep -F "$PLATFORM_INCLUDEDIR" "$work/build/application.includes"; then
  fail "vesk::client brings the platform's include directory"
fi

export PKG_CONFIG_PATH="$prefix/$LIBDIR/pkgconfig"
# Set only to run the programs: the linker has to find the libraries' own libraries without it.
run() {
  LD_LIBRARY_PATH="$prefix/$LIBDIR" "$@"
}

# compile MODULE COMMAND...: with the module's flags, whose escaped blanks only eval understands.
compile() {
  local module=$1 flags
  shift
  eval "flags=($("$PKG_CONFIG" --cflags --libs "$module"))"
  echo "$*" "${flags[@]}"
  "$@" "${flags[@]}"
}

echo "== pkg-config"
warnings=(-Wall -Wextra -Wpedantic -Werror)
compile vesk_client "$CC" -std=c11 "${warnings[@]}" "$here/consumer/application.c" -o "$work/application"
run "$work/application"
compile vesk_service "$CXX" -std=c++20 "${warnings[@]}" "$here/consumer/service.cpp" -o "$work/service"
run "$work/service"
