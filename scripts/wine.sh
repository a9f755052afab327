#!/usr/bin/env bash
# Gets Wine for 32-bit programs and says on standard output where it is: "system", or the directory
# of a system tree of its own to change the root to. Fails with the reason on standard error, at once
# where the kernel runs no 32-bit programs.
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

# Runs the smallest 32-bit program: an ELF header, one segment, and "mov eax, 1 (exit); xor ebx, ebx;
# int 0x80". Some kernels run 64-bit programs only, though Debian's 32-bit packages install there.
run_32_bit_program() {
  {
    printf '\177ELF\1\1\1\0\0\0\0\0\0\0\0\0'               # 32 bit, low byte first
    printf '\2\0\3\0\1\0\0\0\124\200\4\10\64\0\0\0'        # a program for i386, starts at 0x08048054
    printf '\0\0\0\0\0\0\0\0\64\0\40\0\1\0\0\0\0\0\0\0'    # one program header, at 0x34
    printf '\1\0\0\0\0\0\0\0\0\200\4\10\0\200\4\10'        # load from 0 to 0x08048000
    printf '\135\0\0\0\135\0\0\0\5\0\0\0\0\20\0\0'         # 93 bytes, to be read and executed
    printf '\270\1\0\0\0\61\333\315\200'
  } >"$1"
  chmod +x "$1" && LC_ALL=C "$1"
}

program=$(mktemp)
trap 'rm -f "$log" "$program"' EXIT
if ! answer=$(run_32_bit_program "$program" 2>&1); then
  case $answer in
    *"Exec format error"*) fail "this kernel runs no 32-bit x86 programs, so Wine cannot run a 32-bit DLL here" ;;
    *) fail "a 32-bit x86 program cannot be run here: ${answer:-it ended with a fault}" ;;
  esac
fi
if is_installed wine && is_installed wine32:i386; then
  echo system
  exit 0
fi
[ "$(id -u)" -eq 0 ] || fail "wine and wine32:i386 are not installed, and this is not root"
use_tree && exit 0
make_tree && use_tree && exit 0
add_architecture && echo system && exit 0
fail "Wine cannot be installed: $(grep -E '^(E|W):|rror' "$log" | tail -1)"
