#!/usr/bin/env bash
# Times whole jobs: a file set from COUNT CT objects of 137 KB with about 250 header elements, once
# in series of 50 and once in a single series, beside the programs that make a DICOMDIR for files
# that lie in their places already. Prints seconds and ratios of one run on this machine.
#
#   scripts/bench.sh [--large] [--runs N] [DIR]
#
# DIR (default: a directory in the temporary directory) holds the objects; they are removed at the
# end. --large adds 30,000 objects (4 GB). QUILLON_BUILD names a build directory to use instead of
# the release build. Everything lies on one file system and has been read before the clock starts.
set -euo pipefail
cd "$(dirname "$0")/.."

counts=(1000 10000)
runs=3
place=""
while [ $# -gt 0 ]; do
  case $1 in
    --large) counts+=(30000) ;;
    --runs) runs=$2; shift ;;
    --counts) read -r -a counts <<<"$2"; shift ;;
    -*) sed -n '2,11p' "$0" | sed 's/^# \{0,1\}//' >&2; exit 2 ;;
    *) place=$1 ;;
  esac
  shift
done
# Its time for a single series grows with the square of the number of objects.
single_series_limit=1000
# Slower than that by far, whatever the layout.
slow_limit=1000

if [ -z "${QUILLON_BUILD:-}" ]; then
  QUILLON_BUILD=build/release
  cmake --preset release >/dev/null
  cmake --build --preset release --target quillon make_sample_objects >/dev/null
fi
quillon=$PWD/$QUILLON_BUILD/bin/quillon
make_objects=$PWD/$QUILLON_BUILD/bin/make_sample_objects
[ "${QUILLON_BUILD#/}" = "$QUILLON_BUILD" ] || {
  quillon=$QUILLON_BUILD/bin/quillon
  make_objects=$QUILLON_BUILD/bin/make_sample_objects
}

[ -z "$place" ] || mkdir -p "$place"
work=$(mktemp -d "${place:-${TMPDIR:-/tmp}}/quillon-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT
objects=$work/objects
root=$work/set

prepare() {  # layout count
  rm -rf "$objects" "$root"
  local layout=()
  [ "$1" = tree ] || layout=(--one-series)
  "$make_objects" --bench "$2" "${layout[@]}" "$objects"
  # Written pages would otherwise be flushed while the clock runs.
  sync -f "$work"
  find "$objects" -type f -print0 | xargs -0 cat >/dev/null
}

seconds() {  # command...
  local began ended
  began=$(date +%s%N)
  "$@" >"$work/out" 2>&1 || { cat "$work/out" >&2; exit 1; }
  ended=$(date +%s%N)
  awk -v ns=$((ended - began)) 'BEGIN { printf "%.3f", ns / 1e9 }'
}

best() {  # layout count command...
  local layout=$1 count=$2 lowest="" one
  shift 2
  prepare "$layout" "$count"
  for ((run = 0; run < runs; ++run)); do
    [ -d "$objects" ] && [ -n "$(find "$objects" -type f -print -quit)" ] ||
      prepare "$layout" "$count"
    rm -rf "$root"
    mkdir "$root"
    one=$(seconds "$@")
    lowest=$(printf '%s\n%s\n' "$lowest" "$one" | grep . | sort -n | head -1)
  done
  echo "$lowest"
}

ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf (a > 0 ? "%.2f" : "-"), b / a }'; }

line() { printf '%-14s %7s  %-34s %9s %12s %14s\n' "$@"; }

pydicom_file_set() {
  /usr/bin/python3 - "$objects" "$root" <<'PY'
import sys
from pathlib import Path
from pydicom.fileset import FileSet
file_set = FileSet()
for path in sorted(Path(sys.argv[1]).rglob("IM*")):
    file_set.add(path)
file_set.write(sys.argv[2])
PY
}

line layout objects job seconds "us/object" "to --move"
for layout in tree single; do
  for count in "${counts[@]}"; do
    report() {  # job seconds
      line "$layout" "$count" "$1" "$2" \
        "$(awk -v s="$2" -v n="$count" 'BEGIN { printf "%.0f", s * 1e6 / n }')" \
        "$(ratio "$moved" "$2")"
    }
    moved=$(best "$layout" "$count" "$quillon" create --quiet --move --no-other-content \
      --root "$root" "$objects")
    report "quillon create --move" "$moved"
    report "quillon create" "$(best "$layout" "$count" "$quillon" create --quiet \
      --no-other-content --root "$root" "$objects")"
    if [ "$layout" = single ] && [ "$count" -gt "$single_series_limit" ]; then
      continue
    fi
    if command -v dcmmkdir >/dev/null; then
      report "dcmmkdir (DICOMDIR only)" "$(best "$layout" "$count" dcmmkdir -Pgp -nb +id "$objects" \
        +r +D "$root/DICOMDIR")"
    fi
    if [ "$count" -le "$slow_limit" ] && command -v gdcmgendir >/dev/null; then
      report "gdcmgendir (DICOMDIR only)" "$(best "$layout" "$count" gdcmgendir -r -i "$objects" \
        -o "$root/DICOMDIR")"
    fi
    if [ "$count" -le "$slow_limit" ] && /usr/bin/python3 -c 'import pydicom.fileset' 2>/dev/null; then
      report "pydicom FileSet (copies)" "$(best "$layout" "$count" pydicom_file_set)"
    fi
  done
done
