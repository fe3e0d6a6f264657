#!/usr/bin/env bash
# Installs the built tree, moves it, and builds and runs programs against it as its users would.
set -euo pipefail
source "$(dirname "$0")/lib.sh"

install_to "$work/first"
mv "$work/first" "$work/moved"
prefix="$work/moved"

echo "== find_package"
build "$here/consumer" "$work/build" "-DCMAKE_PREFIX_PATH=$prefix"
run "" "$work/build/application"
run "" "$work/build/service"

echo "== an application gets no platform headers"
if grep -F "$PLATFORM_INCLUDEDIR" "$work/build/application.includes"; then
  fail "vesk::client brings the platform's include directory"
fi

export PKG_CONFIG_PATH="$prefix/$LIBDIR/pkgconfig"

flags=()
# flags_of MODULE: sets flags; only eval understands their escaped blanks.
flags_of() {
  eval "flags=($("$PKG_CONFIG" --cflags --libs "$1"))"
}

# compile MODULE COMMAND...: with the module's flags.
compile() {
  flags_of "$1"
  shift
  echo "$*" "${flags[@]}"
  "$@" "${flags[@]}"
}

echo "== pkg-config"
warnings=(-Wall -Wextra -Wpedantic -Werror)
compile vesk_client "$CC" -std=c11 "${warnings[@]}" "$here/consumer/application.c" -o "$work/application"
run "$prefix/$LIBDIR" "$work/application"
compile vesk_service "$CXX" -std=c++20 "${warnings[@]}" "$here/consumer/service.cpp" -o "$work/service"
run "$prefix/$LIBDIR" "$work/service"

echo "== pkg-config, where the libraries have a place of their own"
configure "$SOURCE_DIR" "$work/own" -DVESK_BUILD_TESTS=OFF "-DCMAKE_INSTALL_PREFIX=$prefix" "-DCMAKE_INSTALL_LIBDIR=$work/own lib"
export PKG_CONFIG_PATH="$work/own/package"
flags_of vesk_client
[ "${flags[*]}" = "-I$prefix/include -L$work/own lib -lvesk_client" ] || fail "the flags are: ${flags[*]}"
