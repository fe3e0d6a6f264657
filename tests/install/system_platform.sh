#!/usr/bin/env bash
# Builds the library with VESK_PLATFORM=system against an installed host platform, as though that were the device's sysroot. Like a
# device's platform, it has no type information.
set -euo pipefail
source "$(dirname "$0")/lib.sh"

device="$work/device"
configure "$SOURCE_DIR" "$work/platform" -DCMAKE_CXX_FLAGS=-fno-rtti -DVESK_BUILD_TESTS=OFF
"$CMAKE" --build "$work/platform" --target binder
install_to "$device" platform "$work/platform"
if [ -e "$device/$LIBDIR/libvesk_client.so" ] || [ -e "$device/include/vesk" ]; then
  fail "the component 'platform' holds more than the platform"
fi

system_build() {
  build "$SOURCE_DIR" "$1" -DVESK_PLATFORM=system -DVESK_BUILD_TESTS=OFF "${@:2}"
}

echo "== without a platform, a clear error"
if system_build "$work/none" >"$work/none.log" 2>&1; then
  fail "configured without a platform"
fi
grep -q "vesk_client needs the platform's lib" "$work/none.log" || fail "$(cat "$work/none.log")"

echo "== against the device's libraries"
system_build "$work/build" "-DCMAKE_PREFIX_PATH=$device" "-DCMAKE_INCLUDE_PATH=$device/$PLATFORM_INCLUDEDIR"
library="$work/build/lib/libvesk_client.so"

dynamic() {
  "$READELF" --dynamic --wide "$library" | sed -n "s/.*($1).*\[\(.*\)\]/\1/p" | sort
}
needed=$(dynamic NEEDED)
for lib in libbinder.so liblog.so libutils.so; do
  grep -qx "$lib" <<<"$needed" || fail "libvesk_client.so does not need $lib, but: $needed"
done
soname=$(dynamic SONAME)
[ "$soname" = libvesk_client.so ] || fail "the SONAME is '$soname'"

echo "== installed beside them, and used"
"$CMAKE" --install "$work/build" --prefix "$work/prefix" >"$work/install.log"
if compgen -G "$work/prefix/$LIBDIR/libbinder*" >/dev/null; then
  fail "the platform was installed with the library"
fi
library="$work/prefix/$LIBDIR/libvesk_client.so"
runpath=$(dynamic 'RUNPATH\|RPATH')
[ -z "$runpath" ] || fail "the installed library looks for others in '$runpath'"
prefixes="-DCMAKE_PREFIX_PATH=$work/prefix;$device"
build "$here/consumer" "$work/consumer" "$prefixes" "-DCMAKE_INCLUDE_PATH=$device/$PLATFORM_INCLUDEDIR"
libraries="$work/prefix/$LIBDIR:$device/$LIBDIR"
run "$libraries" "$work/consumer/application"
run "$libraries" "$work/consumer/service"

grep -qx 'Cflags: -fno-rtti' "$work/prefix/$LIBDIR/pkgconfig/vesk_service.pc" || fail "vesk_service.pc asks for type information"

echo "== where the platform's headers are missing, the package is not there, and says why"
if build "$here/consumer" "$work/headerless" "$prefixes" >"$work/headerless.log" 2>&1; then
  fail "configured without the platform's headers"
fi
grep -q 'vesk_client_FOUND to FALSE' "$work/headerless.log" || fail "$(cat "$work/headerless.log")"
grep -q 'VESK_BINDER_INCLUDE_DIR was not found' "$work/headerless.log" || fail "$(cat "$work/headerless.log")"
