# shellcheck shell=bash
# Functions of the scripts, to be sourced: messages, installation of packages, configuring and building. Changes to the root
# of the tree.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
cd "$root" || exit

jobs=$(nproc)
export CTEST_PARALLEL_LEVEL="${CTEST_PARALLEL_LEVEL:-$jobs}"

say() {
  printf '%s\n' "$*" >&2
}

die() {
  say "$(basename "$0"): $*"
  exit 1
}

# quietly COMMAND...: runs the command, and prints its output only if it fails.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if [ "$status" -ne 0 ]; then
    say "failed ($status): $*"
    cat "$log" >&2
  fi
  rm -f "$log"
  return "$status"
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  else
    sudo --preserve-env=DEBIAN_FRONTEND "$@"
  fi
}

# need COMMAND:PACKAGE... or FILE:PACKAGE...: installs the Debian packages whose command or (absolute) file is missing.
need() {
  local entry what packages=()
  for entry in "$@"; do
    what=${entry%%:*}
    case $what in
      /*) [ -e "$what" ] || packages+=("${entry#*:}") ;;
      *) command -v "$what" >/dev/null || packages+=("${entry#*:}") ;;
    esac
  done
  [ ${#packages[@]} -gt 0 ] || return 0
  command -v apt-get >/dev/null || die "install these first (names as in Debian 12): ${packages[*]}"
  [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null || die "needs root (or sudo) to install ${packages[*]}"
  say "installing ${packages[*]}"
  export DEBIAN_FRONTEND=noninteractive
  quietly as_root apt-get update -q
  quietly as_root apt-get install -q -y --no-install-recommends "${packages[@]}"
}

# Installs the packages that configuring and building any preset needs.
need_tools() {
  need cmake:cmake ninja:ninja-build gcc:gcc g++:g++ pkg-config:pkg-config \
    /usr/include/gtest/gtest.h:libgtest-dev /usr/include/sqlite3.h:libsqlite3-dev \
    /usr/include/CLI/CLI.hpp:libcli11-dev /usr/include/nlohmann/json.hpp:nlohmann-json3-dev \
    /usr/include/editline/readline.h:libedit-dev
}

# configure PRESET
configure() {
  quietly cmake --preset "$1"
}

# build PRESET [TARGET...]: prints progress on a terminal, and only failures elsewhere.
build() {
  local preset=$1
  shift
  local command=(cmake --build --preset "$preset")
  [ $# -eq 0 ] || command+=(--target "$@")
  if [ -t 1 ]; then
    "${command[@]}"
  else
    quietly "${command[@]}"
  fi
}
