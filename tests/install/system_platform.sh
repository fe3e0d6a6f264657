#!/usr/bin/env bash
# Builds the library with VESK_PLATFORM=system against the installed host platform, in place of a device's sysroot, and uses it.
set -euo pipefail
source "$(dirname "$0")/lib.sh"

device="$work/device"
install_to "$device" platform
if [ -e "$device/$LIBDIR/libvesk_client.so" ] || [ -e "$device/include/vesk" ]; then
  fail "the component 'platform' holds more than the platform"
fi

# The compiler's launcher: VESK_PLATFORM doesn't change the sources, so their objects come from the tested tree.
cat >"$work/copy_object" <<'SCRIPT'
#!/usr/bin/env bash
while [ "$1" != -o ]; do shift; done
cp "$BUILD_DIR/$2" "$2"
SCRIPT
chmod +x "$work/copy_object"

# system_configure DIRECTORY PLATFORM
system_configure() {
  configure "$SOURCE_DIR" "$1" -DVESK_PLATFORM=system -DVESK_BUILD_TESTS=OFF "-DCMAKE_CXX_COMPILER_LAUNCHER=$work/copy_object" \
    "-DCMAKE_SHARED_LINKER_FLAGS=$CXX_FLAGS" "-DCMAKE_PREFIX_PATH=$2" "-DCMAKE_INCLUDE_PATH=$2/$PLATFORM_INCLUDEDIR"
}

echo "== without a platform, a clear error"
if system_configure "$work/none" "$work/nowhere" >"$work/none.log" 2>&1; then
  fail "configured without a platform"
fi
grep -q "vesk_client needs the platform's lib" "$work/none.log" || fail "$(cat "$work/none.log")"

echo "== against a platform without type information, none is compiled"
cp -R "$device" "$work/no rtti"
sed -i 's/_ZTIN7android7BBinderE/_ZTxN7android7BBinderE/g' "$work/no rtti/$LIBDIR/libbinder.so"
system_configure "$work/plain" "$work/no rtti"
grep -q -- '-fno-rtti.*ClientBase.cpp' "$work/plain/compile_commands.json" || fail "compiled with type information"
grep -qx 'Cflags: -fno-rtti' "$work/plain/package/vesk_service.pc" || fail "vesk_service.pc asks for type information"

echo "== against the device's libraries"
system_configure "$work/build" "$device"
if grep -q -- '-fno-rtti' "$work/build/compile_commands.json"; then
  fail "compiled without type information"
fi
"$CMAKE" --build "$work/build" --target vesk_client
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
install_to "$work/prefix" client "$work/build"
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

echo "== without the platform's headers, the package is not found, and says why"
if configure "$here/consumer" "$work/headerless" "$prefixes" >"$work/headerless.log" 2>&1; then
  fail "configured without the platform's headers"
fi
grep -q 'vesk_client_FOUND to FALSE' "$work/headerless.log" || fail "$(cat "$work/headerless.log")"
grep -q 'VESK_BINDER_INCLUDE_DIR was not found' "$work/headerless.log" || fail "$(cat "$work/headerless.log")"
