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

# The report's lines end with: lines, missed lines, cover, branches, missed branches, cover.
report() {
  llvm-cov report "${objects[@]:1:1}" "${objects[@]:2}" -instr-profile="$build/all.profdata" "$@"
}
if [ $# -gt 0 ]; then
  report "$@"
  exit
fi
for folder in src/charset src/dicom src/dicomobjects src/fileset src/foundation src/platform/com \
  src/platform/win32 src/platform/xml src/recording/image src/recording/recorders; do
  printf '%-26s %s of lines\n' "$folder" "$(report "$folder" | awk '$1 == "TOTAL" { print $10 }')"
done
