#!/bin/sh
# batch.sh LIST OUTPUT-DIRECTORY [JOBS]
#
# Publishes every study directory that LIST names, one a line, several at a time, by GNU parallel. What
# has been done already (by parallel's log) is not done again, so that the same command goes on with a
# batch that was broken off, and tries once more what has failed. At the end count.sh tells what came of it.
set -eu
list=$1
output=$2
here=$(dirname "$(readlink -f "$0")")
mkdir -p "$output"
status=0
parallel --will-cite --jobs "${3:-2}" --joblog "$output/jobs.log" --resume-failed \
  "$here/publish-study.sh" {} "$output" :::: "$list" >"$output/output.log" 2>&1 || status=$?
"$here/count.sh" "$list" "$output"/audit*.jsonl || status=1
[ "$status" -eq 0 ]
