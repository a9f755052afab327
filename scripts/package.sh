#!/usr/bin/env bash
# Makes what people install: the Debian packages, of the tracked files of this tree as they are, and a
# ZIP file with the Windows DLL, which is built in the tree itself (build/windows-x86) and so of all files
# there. All of it lies in build/packages afterwards, with SHA256SUMS. Two builds of one commit, in trees
# with no other files, give the same bytes, wherever the tree lies.
#
#   scripts/package.sh
#     --no-windows            without the ZIP file
#     --output DIR            another directory, from where the script is called; what it holds of an
#                             earlier run is replaced
set -euo pipefail
called_in=$PWD
cd "$(dirname "$0")/.."

output=$PWD/build/packages
windows=1
while [ $# -gt 0 ]; do
  case $1 in
    --no-windows) windows=0 ;;
    --output)
      output=${2:?--output needs a directory}
      [[ $output == /* ]] || output=$called_in/$output
      shift
      ;;
    *) echo "usage: $0 [--no-windows] [--output DIR]" >&2; exit 2 ;;
  esac
  shift
done

fail() {
  echo "package: $1" >&2
  exit 1
}

# Also where the tree is another user's.
git() { command git -c safe.directory="$PWD" "$@"; }
# Files are given this time, and no later one.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct) || fail "the tree is no checkout: its files and their time are not known"
export SOURCE_DATE_EPOCH TZ=UTC LC_ALL=C
umask 022
[ -z "$(git status --porcelain)" ] || echo "package: some files are not as they are in the commit, or not in it" >&2
./scripts/setup.sh --package
version=$(cmake -P cmake/print_version.cmake)
if [ -e "$output" ] && [ ! -e "$output/.quillon-packages" ]; then
  fail "$output exists and was not made by this script; name another directory"
fi
rm -rf "$output"
mkdir -p "$output"
touch "$output/.quillon-packages"
output=$(cd "$output" && pwd)
work=$output/work
mkdir "$work"
trap 'rm -rf "$work"' EXIT
# The same for every version, which the compiler's cache would take for other files.
source=$work/quillon

# The compiler's cache is the user's, whatever home the packaging tools set.
if command -v ccache >/dev/null; then
  CCACHE_DIR=$(ccache --get-config cache_dir)
  export CCACHE_DIR
  configuration=${XDG_CONFIG_HOME:-$HOME/.config}/ccache/ccache.conf
  [ ! -e "$configuration" ] || export CCACHE_CONFIGPATH=$configuration
fi

# The entries of the newest version in the changelog, in Debian's form.
debian_changelog() {
  echo "quillon ($version) bookworm; urgency=medium"
  echo
  awk '/^## /   { if (found) exit; found = 1; next }
       !found || /^$/ { next }
       /^- /    { if (entry) print entry; entry = substr($0, 3); next }
                { entry = entry " " substr($0, 3) }
       END      { print entry }' CHANGELOG.md |
    while read -r entry; do
      fold -s -w 74 <<<"$entry" | sed 's/ *$//; 1s/^/  * /; 2,$s/^/    /'
    done
  echo
  echo " -- $(sed -n 's/^Maintainer: //p' debian/control)  $(date -R -d "@$SOURCE_DATE_EPOCH")"
}

debian_packages() {
  mkdir "$source"
  git ls-files -z | tar --null --files-from - -cf - | tar -xf - -C "$source"
  debian_changelog >"$source/debian/changelog"
  (cd "$source" && dpkg-buildpackage --build=binary --no-sign) >"$output/build.log" 2>&1 || {
    grep -v "^\[" "$output/build.log" | tail -n 30 | cut -c 1-300 >&2
    fail "the Debian packages cannot be built: all of the log is in $output/build.log"
  }
  mv "$work"/*.deb "$work"/*.buildinfo "$work"/*.changes "$output"
}

# What a maker of workstations gets: the DLL, how it is registered, how it is called.
windows_zip() {
  local name=QuillonMediaRW-$version-windows-x86 script
  local files=$work/$name
  cmake --preset windows-x86 >/dev/null
  cmake --build --preset windows-x86 --target QuillonMediaRW >/dev/null
  cmake --install build/windows-x86 --prefix "$files" >/dev/null
  # It asks for itself, while the packages are told.
  [ "$(cmake -P cmake/print_version.cmake)" = "$version" ] ||
    fail "the tree has changed meanwhile: the DLL is of another version than the packages"
  sed "s/@VERSION@/$version/; s/$/\r/" packaging/windows/README.txt >"$files/README.txt"
  for script in register unregister; do
    sed 's/$/\r/' "packaging/windows/$script.cmd" >"$files/$script.cmd"
  done
  install -D -m 0644 /usr/share/doc/mingw-w64-i686-dev/copyright "$files/notices/mingw-w64.txt"
  find "$files" -exec touch -d "@$SOURCE_DATE_EPOCH" {} +
  (cd "$work" && find "$name" -type f | sort | zip -X -q "$output/$name.zip" -@)
}

debian_packages
[ "$windows" -eq 0 ] || windows_zip
(
  shopt -s nullglob
  cd "$output"
  sha256sum ./*.deb ./*.zip | sed 's#\./##' >SHA256SUMS
)
rm -rf "$work"
ls -l "$output" | awk 'NF > 8 { print $5, $9 }'
