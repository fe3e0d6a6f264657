#!/usr/bin/env bash
# scripts/lib/armhf-sysroot.sh DIRECTORY: makes a folder with Debian's libraries for armhf, those that building and testing this
# tree takes. They are downloaded and unpacked there; no other folder of the system changes, nor do the architectures that its
# dpkg knows. Does nothing if the folder is complete.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

packages=(libc6 libgcc-s1 libstdc++6
  libgtest-dev libsqlite3-0 libsqlite3-dev libedit2 libedit-dev libbsd0 libmd0 libtinfo6 libcli11-dev nlohmann-json3-dev)

[ $# -eq 1 ] || die "needs the name of the folder"
mkdir -p "$1"
sysroot=$(cd "$1" && pwd)
# Holds the names of the packages when all are there; until then it marks the folder as ours to clear.
mark=$sysroot/.packages
[ "$(cat "$mark" 2>/dev/null || true)" != "${packages[*]}" ] || exit 0
[ -e "$mark" ] || [ -z "$(ls -A "$sysroot")" ] || die "$sysroot holds something else"

command -v apt-get >/dev/null || die "unpack these packages for armhf, and those they depend on, in $sysroot: ${packages[*]}"
say "making $sysroot"
find "$sysroot" -mindepth 1 -delete
: >"$mark"

apt=$(mktemp -d)
trap 'rm -rf "$apt"' EXIT
mkdir -p "$apt"/{state,cache,packages}
: >"$apt/status"
# The system's sources, and all else of our own. A user has no right to change to apt's.
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

# One list that can't be had, of updates or of a foreign source, does no harm if the packages are in the others.
updated=0
apt-get update -q >"$apt/log" 2>&1 </dev/null || updated=$?
if ! (cd "$apt/packages" && quietly apt-get download -q "${packages[@]}"); then
  [ "$updated" -eq 0 ] || cat "$apt/log" >&2
  die "the packages for armhf can't be had from the sources of this system's apt"
fi
for package in "$apt"/packages/*.deb; do
  dpkg-deb -x "$package" "$sysroot"
done
printf '%s\n' "${packages[*]}" >"$mark"
