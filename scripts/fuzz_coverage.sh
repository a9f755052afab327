#!/usr/bin/env bash
# How many lines the fuzz targets reach: replays the corpus, and what runs of the targets have found
# (build/fuzz/found), in a build of their own and tells the line coverage by folder.
#
#   scripts/fuzz_coverage.sh           a line for each folder
#   scripts/fuzz_coverage.sh DIR ...   for the files below these directories, a line each
#
# Details of a file afterwards:
#   llvm-cov show build/fuzz-coverage/bin/fuzz_data_set -instr-profile=build/fuzz-coverage/all.profdata FILE
set -euo pipefail
cd "$(dirname "$0")/.."
build=build/fuzz-coverage

cmake --preset fuzz-coverage >/dev/null
cmake --build --preset fuzz-coverage
rm -rf "$build/profiles"
mkdir "$build/profiles"
objects=()
for target in "$build"/bin/fuzz_*; do
  name=${target##*/fuzz_}
  inputs=("fuzz/corpus/$name")
  [ -d "build/fuzz/found/$name" ] && inputs+=("build/fuzz/found/$name")
  LLVM_PROFILE_FILE="$build/profiles/$name.profraw" "$target" "${inputs[@]}"
  objects+=(-object "$target")
done
llvm-profdata merge -sparse "$build"/profiles/*.profraw -o "$build/all.profdata"

llvm-cov export -summary-only "${objects[@]:1:1}" "${objects[@]:2}" \
  -instr-profile="$build/all.profdata" 2>/dev/null >"$build/summary.json"
python3 - "$build/summary.json" "$@" <<'END'
import json, os, sys
folders = sys.argv[2:] or ["src/charset", "src/dicom", "src/dicomobjects", "src/fileset", "src/foundation",
                           "src/platform/com", "src/platform/win32", "src/platform/xml",
                           "src/recording/image", "src/recording/recorders"]
with open(sys.argv[1]) as summary:
    files = json.load(summary)["data"][0]["files"]
for folder in folders:
    lines = covered = 0
    for file in files:
        path = os.path.relpath(os.path.normpath(file["filename"]))
        if not path.startswith(folder.rstrip("/") + "/"):
            continue
        count = file["summary"]["lines"]
        lines += count["count"]
        covered += count["covered"]
        if len(sys.argv) > 2:
            print(f"{path:60} {count['percent']:6.1f} % of {count['count']} lines")
    print(f"{folder:60} {100 * covered / max(lines, 1):6.1f} % of {lines} lines")
END
