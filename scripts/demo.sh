#!/usr/bin/env bash
# From a fresh clone: installs what is missing, builds, makes sample objects and turns them into a
# DICOM file set and a disc image. An argument names the directory for the demo (default: build/demo).
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/setup.sh
cmake --preset release -DQUILLON_TESTS=OFF >/dev/null
cmake --build --preset release --target quillon make_sample_objects

demo=${1:-build/demo}
if [ -e "$demo" ] && [ ! -e "$demo/.quillon-demo" ]; then
  echo "demo: $demo exists and was not made by this script; name another directory" >&2
  exit 1
fi
rm -rf "$demo"
mkdir -p "$demo"
touch "$demo/.quillon-demo"

echo
echo "== Sample objects (CT, MR, CR, a report, a presentation state, a key object document)"
build/release/bin/make_sample_objects "$demo/objects"
find "$demo/objects" -type f | sort

echo
echo "== quillon create --hierarchy"
build/release/bin/quillon create --hierarchy --root "$demo/set" "$demo/objects"

echo
echo "== The file set in $demo/set"
(cd "$demo/set" && find . -type f | sort)
if command -v dcmdump >/dev/null; then
  echo
  echo "== Its directory records"
  dcmdump --search 0004,1430 --search 0004,1500 "$demo/set/DICOMDIR"
fi

echo
echo "== quillon publish: the same objects onto a blank CD-R in a virtual recorder"
demo_root=$(cd "$demo" && pwd)
export QUILLON_RECORDERS="$demo_root/recorders"
build/release/bin/quillon publish --dry-run --volume DEMO "$demo/objects"
echo
build/release/bin/quillon publish --root "$demo_root/publish" --volume DEMO "$demo/objects"

echo
echo "== The disc, as the recorder gave it out"
find "$demo/recorders" -name '*.iso'
if command -v isoinfo >/dev/null; then
  isoinfo -J -f -i "$(find "$demo/recorders" -name 'DEMO*.iso' | head -n 1)"
fi

echo
echo "== quillon disc status: what a host is told of a used CD-RW in that recorder"
build/release/bin/quillon disc insert --media cd-rw \
  --image "$(find "$demo_root/recorders" -name 'DEMO*.iso' | head -n 1)"
build/release/bin/quillon disc status
