#!/usr/bin/env bash
# Times `quillon header`, from the start of the process to its end:
#   - on headers of COUNT elements (10,000 and 100,000 unless given), side by side and in the items of a
#     sequence, as text and as a page, beside `dcm2xml | xsltproc` with stylesheets that give as much;
#   - on one typical object, beside dcmdump;
#   - on 1,000 of them in one process, beside `dcmdump +sd +r`.
# Prints the lowest of several runs, in turns with the peer, user and system time, and ratios of one run
# on this machine.
#
#   scripts/bench_header.sh [COUNT...]
#
# QUILLON_BUILD names a build directory to use instead of the release build.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${QUILLON_BUILD:-build/release}
if [ -z "${QUILLON_BUILD:-}" ]; then
  cmake --preset release >/dev/null
  cmake --build --preset release --target quillon make_sample_objects >/dev/null
fi
[ $# -gt 0 ] || set -- 10000 100000
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

peer() { dcm2xml "$1" 2>/dev/null | xsltproc "bench/dcm2xml_$2.xsl" -; }
ours() { "$build/bin/quillon" header --stylesheet "$2" "$1"; }

seconds() {  # command...
  local TIMEFORMAT='%3U %3S'
  { time "$@" >"$work/out" 2>/dev/null; } 2>&1 | awk '{ printf "%.3f\n", $1 + $2 }'
}

line() { printf '%-9s %9s  %-32s %9s %10s\n' "$@"; }

# Runs the peer's command and ours in turns. The peer is left out where it is not installed.
compare() {  # runs layout elements peer-job our-job peer-program "peer command" "our command"
  local runs=$1 layout=$2 count=$3 base="" one=""
  : >"$work/base"
  : >"$work/one"
  for ((run = 0; run < runs; ++run)); do
    # shellcheck disable=SC2086  # a command and its arguments
    if command -v "$6" >/dev/null; then seconds $7 >>"$work/base"; fi
    # shellcheck disable=SC2086
    seconds $8 >>"$work/one"
  done
  base=$(sort -n "$work/base" | head -1)
  one=$(sort -n "$work/one" | head -1)
  [ -z "$base" ] || line "$layout" "$count" "$4" "$base" 1.00
  line "$layout" "$count" "$5" "$one" \
    "$(awk -v a="$one" -v b="$base" 'BEGIN { if (b > 0) printf "%.2f", a / b; else printf "-" }')"
}

line layout elements job seconds "to peer"
for layout in flat sequence; do
  for count in "$@"; do
    make_object "$layout" "$count" "$work/object.dcm"
    for form in text html; do
      compare 5 "$layout" "$count" "dcm2xml | xsltproc ($form)" "quillon header ($form)" xsltproc \
        "peer $work/object.dcm $form" "ours $work/object.dcm $form"
    done
  done
done

# One is too short for the clock, and a shell that forks takes as long.
hundred_times() { seq 100 | sed "s|.*|${*: -1}|" | xargs -n 1 "${@:1:$#-1}"; }
"$build/bin/make_sample_objects" --bench 1000 "$work/objects" >/dev/null
typical=$(find "$work/objects" -type f -print -quit)
compare 5 typical 250 "dcmdump (100 processes)" "quillon header (100 processes)" dcmdump \
  "hundred_times dcmdump $typical" "hundred_times $build/bin/quillon header $typical"
compare 5 typical 250 "dcmdump +sd +r (1,000 files)" "quillon header -r (1,000 files)" dcmdump \
  "dcmdump +sd +r $work/objects" "$build/bin/quillon header -r $work/objects"
