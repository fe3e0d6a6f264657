# shellcheck shell=bash
# What the tests of the installed tree share. CMakeLists.txt beside this file sets the variables in capitals.

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

# install_to PREFIX [COMPONENT]
install_to() {
  "$CMAKE" --install "$BUILD_DIR" --prefix "$1" ${2:+--component "$2"} >"$work/install.log" ||
    fail "install: $(cat "$work/install.log")"
}

# build SOURCE BINARY [CMAKE ARGUMENT...]
build() {
  local source=$1 binary=$2
  shift 2
  "$CMAKE" -S "$source" -B "$binary" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    "-DCMAKE_C_COMPILER=$CC" "-DCMAKE_CXX_COMPILER=$CXX" "$@"
  "$CMAKE" --build "$binary"
}
