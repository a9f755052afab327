#!/bin/sh
# receive.sh PORT SPOOL [SECONDS]
#
# Receives studies by DICOM (storescp of dcmtk) and publishes each one that has had no new object for
# SECONDS, 60 by default, or as soon as one of another study comes. Every arrival has a directory of its
# own, so that images that come later make a medium of their own and replace none.
set -eu
port=$1
mkdir -p "$2/arriving"
spool=$(readlink -f "$2")
here=$(dirname "$(readlink -f "$0")")
# The directory's name (#p) is made by storescp of a time. Names that a sender chooses, such as its
# title (#a), have no place in a command of a shell.
exec storescp --output-directory "$spool/arriving" --sort-conc-studies study --unique-filenames \
  --eostudy-timeout "${3:-60}" --exec-on-eostudy "'$here/take-in.sh' '#p' '$spool'" "$port"
