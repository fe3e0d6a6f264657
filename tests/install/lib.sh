# shellcheck shell=bash
# Shared by the tests of the installed tree. CMakeLists.txt beside this file sets the variables in capitals.

# shellcheck disable=SC2034  # used by the tests
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# A blank in the name: paths have to be quoted everywhere.
work=$(mktemp -d "${TMPDIR:-/tmp}/vesk install.XXXXXX")
trap 'rm -rf "$work"' EXIT
export BINDER_RUNTIME_DIR="$work/runtime"
unset LD_LIBRARY_PATH CMAKE_PREFIX_PATH PKG_CONFIG_PATH

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

# install_to PREFIX [COMPONENT [BINARY]]
install_to() {
  "$CMAKE" --install "${3:-$BUILD_DIR}" --prefix "$1" ${2:+--component "$2"} >"$work/install.log" ||
    fail "install: $(cat "$work/install.log")"
}

# Of the tree that is tested, so that other programs are built for the same machine.
machine=("-DCMAKE_C_COMPILER=$CC" "-DCMAKE_CXX_COMPILER=$CXX")
if [ -n "$TOOLCHAIN_FILE" ]; then
  machine=("-DCMAKE_TOOLCHAIN_FILE=$TOOLCHAIN_FILE" "-DCMAKE_SYSROOT=$SYSROOT" "-DCMAKE_FIND_ROOT_PATH=$work")
fi
IFS='|' read -ra emulator <<<"$RUN_BY"

# configure SOURCE BINARY [CMAKE ARGUMENT...]
configure() {
  "$CMAKE" -S "$1" -B "$2" -G Ninja -DCMAKE_BUILD_TYPE=Debug "${machine[@]}" "${@:3}"
}

# build SOURCE BINARY [CMAKE ARGUMENT...]
build() {
  configure "$@"
  "$CMAKE" --build "$2"
}

# run LIBRARY_PATH PROGRAM: with the libraries that the program's own RUNPATH doesn't lead to. One that hangs is ended, also if this
# test isn't there any more to do it.
run() {
  timeout --kill-after=5 120 env ${1:+"LD_LIBRARY_PATH=$1"} "${emulator[@]}" "$2"
}
