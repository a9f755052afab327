#!/bin/sh
# de-identify.sh STUDY-DIRECTORY PSEUDONYM ZIP-FILE
#
# Copies the study of one patient, takes identities out of the copy (gdcmanon, by the Basic Application
# Level Confidentiality Profile; PSEUDONYM is the new name and ID), and publishes the copy. Refused
# when an object is missing afterwards, or the patient's name or an ID of more than three characters can
# still be found in a file.
# Pixels are not looked at: names that are burned into an image stay there.
set -eu
umask 077
study=$1
pseudonym=$2
zip=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
  echo "de-identify: $1" >&2
  exit 1
}

quillon list --json "$study" >"$work/before.json"
[ "$(jq '.patients | length' "$work/before.json")" = 1 ] ||
  fail "There must be one patient in $study; a pseudonym stands for one."
# The profile keeps what it removes, encrypted for the owner of this key. Nobody gets it here: the key
# goes away, and so does what is encrypted.
openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj /CN=nobody \
  -keyout "$work/key.pem" -out "$work/certificate.pem" 2>/dev/null
mkdir "$work/copy"
gdcmanon --de-identify --recursive --continue --certificate "$work/certificate.pem" \
  --input "$study" --output "$work/copy"
find "$work/copy" -type f -exec dcmodify --no-backup --ignore-missing-tags \
  --erase-private --erase-all "(0400,0500)" --insert "(0010,0010)=$pseudonym" --insert "(0010,0020)=$pseudonym" {} +

quillon list --json "$work/copy" >"$work/after.json"
[ "$(jq .objects "$work/before.json")" = "$(jq .objects "$work/after.json")" ] ||
  fail "Not every object of $study could be de-identified."
jq -r '.patients[] | .name, .id | select(. != null and length > 3)' "$work/before.json" >"$work/identities"
if grep -rlaFf "$work/identities" "$work/copy" >"$work/found"; then
  fail "The name or the ID still stands in $(wc -l <"$work/found") files."
fi
quillon publish --quiet --invent --one-patient --no-other-content --zip "$zip" "$work/copy"
