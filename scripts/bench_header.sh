#!/usr/bin/env bash
# Times `quillon header` on headers of COUNT elements (10,000 and 100,000 unless given), side by side
# and in the items of a sequence, beside `dcm2xml | xsltproc` with a stylesheet that prints the same
# columns. Prints the lowest of five runs, user and system time, and ratios of one run on this machine.
#
#   scripts/bench_header.sh [COUNT...]
#
# QUILLON_BUILD names a build directory to use instead of the release build.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${QUILLON_BUILD:-build/release}
if [ -z "${QUILLON_BUILD:-}" ]; then
  cmake --preset release >/dev/null
  cmake --build --preset release --target quillon >/dev/null
fi
[ $# -gt 0 ] || set -- 10000 100000
runs=5
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

make_object() {  # layout count file
  /usr/bin/python3 - "$@" <<'PY'
import sys
sys.path.insert(0, "tests/cli")
from program import element, item, dicom_file
layout, count, path = sys.argv[1], int(sys.argv[2]), sys.argv[3]
more = {}
if layout == "flat":
    group = 0x0041
    while count > 0:
        more[group << 16 | 0x0010] = element(group << 16 | 0x0010, "LO", "MAKER")
        for number in range(min(count, 240)):
            tag = group << 16 | 0x1000 | number
            more[tag] = element(tag, "LO", "some value %d" % number)
        group, count = group + 2, count - 240
else:
    def code(number):
        return item(element(0x00080100, "SH", "C%d" % number) +
                    element(0x00080104, "LO", "Meaning"))
    more[0x0040A730] = element(0x0040A730, "SQ", b"".join(
        item(element(0x0040A010, "CS", "CONTAINS") + element(0x0040A043, "SQ", code(number)) +
             element(0x0040A160, "UT", "some text")) for number in range(count // 5)))
with open(path, "wb") as file:
    file.write(dicom_file(more=more))
PY
}

peer() { dcm2xml "$1" 2>/dev/null | xsltproc bench/dcm2xml_text.xsl -; }
ours() { "$build/bin/quillon" header --stylesheet "$2" "$1"; }

lowest() {  # command...
  local low="" one TIMEFORMAT='%3U %3S'
  for ((run = 0; run < runs; ++run)); do
    one=$( { time "$@" >"$work/out"; } 2>&1 | awk '{ printf "%.3f", $1 + $2 }')
    low=$(printf '%s\n%s\n' "$low" "$one" | grep . | sort -n | head -1)
  done
  echo "$low"
}

line() { printf '%-9s %9s  %-32s %9s %10s\n' "$@"; }

line layout elements job seconds "to peer"
for layout in flat sequence; do
  for count in "$@"; do
    make_object "$layout" "$count" "$work/object.dcm"
    base=""
    if command -v dcm2xml >/dev/null && command -v xsltproc >/dev/null; then
      base=$(lowest peer "$work/object.dcm")
      line "$layout" "$count" "dcm2xml | xsltproc" "$base" 1.00
    fi
    for stylesheet in text html; do
      one=$(lowest ours "$work/object.dcm" "$stylesheet")
      line "$layout" "$count" "quillon header ($stylesheet)" "$one" \
        "$(awk -v a="$one" -v b="$base" 'BEGIN { if (b > 0) printf "%.2f", a / b; else printf "-" }')"
    done
  done
done
