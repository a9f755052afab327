#!/usr/bin/env bash
# Installs what the build needs from Debian's packages; with --package also what makes packages,
# with --test also what the tests use, with --deep what only their long form uses, and with --pictures
# what scripts/pictures.sh draws with.
# Does nothing for packages that are there already. Needs root only when something is missing.
set -euo pipefail

build_packages=(
  g++ cmake ninja-build pkg-config libcli11-dev nlohmann-json3-dev
  libxml2-dev libxslt1-dev libcurl4-openssl-dev libssl-dev libburn-dev libarchive-dev
)
package_packages=(dpkg-dev debhelper g++-mingw-w64-i686-win32 mingw-w64-tools zip)
test_packages=(
  libgtest-dev googletest
  dcmtk dicom3tools libgdcm-tools python3 python3-pydicom python3-jsonschema
  chromium libxml2-utils w3c-sgml-lib
  zsh fish
  xsltproc openssl xorriso genisoimage udftools p7zip-full unzip libudfread-dev
  clang-format clang-tidy jq parallel lintian debootstrap
)
deep_packages=(clang valgrind)
picture_packages=(python3 chromium fonts-dejavu-core fonts-liberation pngquant optipng)

packages=("${build_packages[@]}")
case "${1:-}" in
  "") ;;
  --package) packages+=("${package_packages[@]}") ;;
  --test) packages+=("${package_packages[@]}" "${test_packages[@]}") ;;
  --deep) packages+=("${package_packages[@]}" "${test_packages[@]}" "${deep_packages[@]}") ;;
  --pictures) packages+=("${picture_packages[@]}") ;;
  *) echo "usage: $0 [--package | --test | --deep | --pictures]" >&2; exit 2 ;;
esac

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
    missing+=("$package")
done
[ "${#missing[@]}" -eq 0 ] && exit 0

echo "setup: installing ${missing[*]}"
if [ "$(id -u)" -ne 0 ]; then
  echo "setup: run as root, or install these packages yourself: ${missing[*]}" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
