#!/bin/sh
# kiosk.sh STUDY-DIRECTORY VOLUME [DISCS]
#
# One job of a station where nobody watches the program: discs of one study, in the first recorder. Prints
# one line for the person in front of it; all else goes to the file that KIOSK_LOG names.
set -eu
log=${KIOSK_LOG:-/dev/null}
status=0
# Further discs are waited for, five minutes each.
answer=$(quillon publish --quiet --json --strict --volume "$2" --copies "${3:-1}" --wait 300 \
  "$1" 2>>"$log") || status=$?
printf '%s\n' "$answer" >>"$log"
case $status in
  0) printf '%s' "$answer" | jq -r '"Done: \(.objects) objects on \(.volume), read back."' ;;
  1) printf '%s' "$answer" | jq -r '.error, if .kept then "The file set is kept in \(.root)." else empty end' ;;
  *) echo "This station is set up wrongly: quillon ended with $status." ;;
esac
exit "$status"
