#!/usr/bin/env bash
# Times whole jobs beside the usual tools, all in one run: creating and copying file sets, discs and
# images, headers. What docs/performance.md shows is its output. Takes an hour on two cores, wants a
# machine that does nothing else, and room for 14 GB.
#
#   scripts/bench.sh [--runs N] [DIR]
#
# DIR (default: the temporary directory) is where the files lie; they are removed at the end.
# QUILLON_BUILD names a build directory to use instead of the release build. Needs dcmtk,
# genisoimage and xsltproc.
set -euo pipefail
cd "$(dirname "$0")/.."

runs=5
place=()
while [ $# -gt 0 ]; do
  case $1 in
    --runs) runs=$2; shift ;;
    -*) sed -n '2,12p' "$0" | sed 's/^# \{0,1\}//' >&2; exit 2 ;;
    *) place=("$1") ;;
  esac
  shift
done
if [ -z "${QUILLON_BUILD:-}" ]; then
  cmake --preset release >/dev/null
  cmake --build --preset release --target quillon make_sample_objects >/dev/null
fi

echo "$(nproc) cores, $(awk '/MemTotal/ { printf "%.0f GB", $2 / 1048576 }' /proc/meminfo), $(uname -sr)"
dcmdump --version | sed -n 1p
genisoimage --version
echo
scripts/bench_creation.py --runs "$runs" "${place[@]}"
echo
scripts/bench_disc.py --runs "$runs" "${place[@]}"
echo
scripts/bench_header.sh
