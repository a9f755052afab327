#!/bin/sh
# publish-inbox.sh SPOOL
#
# Publishes what lies in SPOOL/inbox, one study directory after the other, and leaves the inbox empty: what
# is none is set aside, too. Who brings a study copies it beside the inbox, on the same file system, and
# moves it there when it is whole: a move is one step.
set -eu
spool=$(readlink -f "$1")
here=$(dirname "$(readlink -f "$0")")
for study in "$spool/inbox"/*; do
  [ -e "$study" ] || continue
  "$here/take-in.sh" "$study" "$spool"
done
