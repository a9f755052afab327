#!/usr/bin/env bash
# Gets Wine for 32-bit programs and says on standard output where it is: "system", or the directory
# of a system tree of its own to change the root to. Fails with the reason on standard error.
#
# The tree comes first: it is made of the 32-bit packages of the same Debian release and leaves the
# machine's own packages alone. Where it cannot be made, the machine gets a second architecture.
set -uo pipefail

tree=${QUILLON_WINE_TREE:-/var/cache/quillon-wine}
log=$(mktemp)
trap 'rm -f "$log"' EXIT
export DEBIAN_FRONTEND=noninteractive

fail() {
  echo "wine: $1" >&2
  exit 1
}

is_installed() {
  dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'install ok installed'
}

# What the tree needs to be mounted is mounted for one command alone (tests/com_client/hosts.py): no
# mount stays behind, least of all under a directory that someone removes.
use_tree() {
  [ -e "$tree/.complete" ] || return 1
  unshare --mount chroot "$tree" sh -c 'mount -t proc proc /proc && wine --version' >>"$log" 2>&1 ||
    return 1
  echo "$tree"
}

# A tree that is there already is left alone, whatever is wrong with it. Only what an interrupted run
# of this function left is removed, and nothing that is mounted below it.
make_tree() {
  local release begun=$tree.begun
  [ -e "$tree" ] && return 1
  release=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
  [ -n "$release" ] || return 1
  is_installed debootstrap ||
    apt-get install -y -qq --no-install-recommends debootstrap >>"$log" 2>&1 || return 1
  [ ! -e "$begun" ] || rm -rf --one-file-system "$begun" || return 1
  # debootstrap and the packages mount below the tree: in a namespace that ends with them.
  unshare --mount sh -ec '
    debootstrap --variant=minbase --arch=i386 "$1" "$2"
    chroot "$2" apt-get update -qq
    chroot "$2" apt-get install -y -qq --no-install-recommends wine wine32
  ' make_tree "$release" "$begun" >>"$log" 2>&1 || return 1
  touch "$begun/.complete" && mv -T "$begun" "$tree"
}

add_architecture() {
  local had=0
  dpkg --print-foreign-architectures | grep -qx i386 && had=1
  dpkg --add-architecture i386
  apt-get update -qq >>"$log" 2>&1 &&
    apt-get install -y -qq --no-remove --no-install-recommends wine wine32:i386 >>"$log" 2>&1 &&
    return 0
  # Without the packages the architecture would only make later updates fail.
  [ "$had" -eq 1 ] || { dpkg --remove-architecture i386 && apt-get update -qq >>"$log" 2>&1; }
  return 1
}

if is_installed wine && is_installed wine32:i386; then
  echo system
  exit 0
fi
[ "$(id -u)" -eq 0 ] || fail "wine and wine32:i386 are not installed, and this is not root"
use_tree && exit 0
make_tree && use_tree && exit 0
add_architecture && echo system && exit 0
fail "Wine cannot be installed: $(grep -E '^(E|W):|rror' "$log" | tail -1)"
