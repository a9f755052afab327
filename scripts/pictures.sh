#!/usr/bin/env bash
# Makes the pictures of the README anew, in docs/pictures: a recording of a job on a terminal, pages of
# a header and of a medium, and in shown.txt the text of them all, which the test cli_pictures compares
# with what the program prints. What they show is made up, and has neither the day nor the machine in it.
# Nothing is drawn by hand: scripts/pictures runs the program of the release build.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/setup.sh --pictures
cmake --preset release >/dev/null
cmake --build --preset release --target quillon >/dev/null
PYTHONDONTWRITEBYTECODE=1 python3 scripts/pictures/pictures.py build/release/bin/quillon
ls -l docs/pictures
