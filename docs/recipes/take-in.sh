#!/bin/sh
# take-in.sh STUDY-DIRECTORY SPOOL
#
# Publishes a study that is complete, then moves its directory out of the way: to SPOOL/done, or with the
# reason beside it to SPOOL/failed. Nothing is removed; what in done may go is for you to say.
set -eu
study=$1
spool=$2
name=$(basename "$study")
here=$(dirname "$(readlink -f "$0")")
mkdir -p "$spool/done" "$spool/failed" "$spool/media"
if "$here/publish-study.sh" "$study" "$spool/media" >"$spool/$name.log" 2>&1; then
  place=$spool/done
else
  place=$spool/failed
fi
# A directory of that name may be there from another day.
[ ! -e "$place/$name" ] || name=$name.$(date +%s).$$
mv -T "$study" "$place/$name"
mv "$spool/$(basename "$study").log" "$place/$name.log"
