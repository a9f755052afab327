#!/bin/sh
# count.sh LIST AUDIT-FILE...
#
# Holds the list of a batch against the audit lines: the last line of each study decides. Prints one
# object, and ends with 0 only if every study of the list was written and read back. Files of several
# workstations count together.
set -eu
list=$(xargs --delimiter='\n' realpath -ms -- <"$1")  # as the audit files have them
shift
cat -- "$@" | jq --slurp --arg list "$list" '
  ($list | split("\n") | map(select(. != "")) | unique) as $wanted
  | (sort_by(.time) | map({key: .sources[0], value: .}) | from_entries) as $last
  | {studies: ($wanted | length),
     written: [$wanted[] | select($last[.].result == "written" and $last[.].verified)] | length,
     failed: [$wanted[] | select($last[.].result == "failed") | {study: ., error: $last[.].error}],
     missing: [$wanted[] | select($last[.] == null)],
     patients: [$wanted[] | $last[.].patients // [] | .[]] | unique | length}
  | ., if .written == .studies then empty else error("not all studies were written") end'
