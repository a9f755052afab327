#!/bin/sh
# publish-study.sh STUDY-DIRECTORY OUTPUT-DIRECTORY
#
# One study becomes one ZIP file, and one line of the audit file beside it. The exit status is
# quillon's: 0 written and read back, 1 failed, 2 wrong command line. Jobs may run side by side: without
# --root each works in a directory of its own. A ZIP file of that name is never replaced.
set -eu
study=$(realpath -ms "$1")  # as the audit file has it
output=$2
mkdir -p "$output"
exec quillon publish --quiet --audit "$output/audit.jsonl" \
  --zip "$output/$(basename "$study").zip" "$study"
