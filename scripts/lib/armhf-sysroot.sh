#!/usr/bin/env bash
# scripts/lib/armhf-sysroot.sh DIRECTORY: makes a sysroot with the Debian packages for armhf that the build and the tests need.
#
# The packages are downloaded and unpacked there; the system and the architectures of its dpkg do not change. Does nothing if
# the sysroot is complete.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

packages=(libc6 libgcc-s1 libstdc++6
  libgtest-dev libsqlite3-0 libsqlite3-dev libedit2 libedit-dev libbsd0 libmd0 libtinfo6 libcli11-dev nlohmann-json3-dev)

[ $# -eq 1 ] || die "needs the name of the folder"
mkdir -p "$1"
sysroot=$(cd "$1" && pwd)
# Lists the packages of a complete sysroot. An empty file marks an incomplete one, which may be cleared.
mark=$sysroot/.packages
[ "$(cat "$mark" 2>/dev/null || true)" != "${packages[*]}" ] || exit 0
[ -e "$mark" ] || [ -z "$(ls -A "$sysroot")" ] || die "$sysroot is not empty, and no sysroot of this script"

command -v apt-get >/dev/null || die "unpack these packages for armhf, and those they depend on, in $sysroot: ${packages[*]}"
say "making $sysroot"
find "$sysroot" -mindepth 1 -delete
: >"$mark"

apt=$(mktemp -d)
trap 'rm -rf "$apt"' EXIT
mkdir -p "$apt"/{state,cache,packages}
: >"$apt/status"
# The package sources of the system, but separate state and cache. Without root, apt cannot switch to its sandbox user.
cat >"$apt/apt.conf" <<CONF
APT::Architecture "armhf";
APT::Architectures { "armhf"; };
APT::Sandbox::User "";
Acquire::Languages "none";
Dir::State "$apt/state";
Dir::State::status "$apt/status";
Dir::Cache "$apt/cache";
CONF
export APT_CONFIG=$apt/apt.conf

# A list that cannot be updated does no harm if the other lists have the packages.
updated=0
apt-get update -q >"$apt/log" 2>&1 </dev/null || updated=$?
if ! (cd "$apt/packages" && quietly apt-get download -q "${packages[@]}"); then
  [ "$updated" -eq 0 ] || cat "$apt/log" >&2
  die "this system's apt sources do not provide the packages for armhf"
fi
for package in "$apt"/packages/*.deb; do
  dpkg-deb -x "$package" "$sysroot"
done
printf '%s\n' "${packages[*]}" >"$mark"
