#!/usr/bin/env bash
# The one check, the same at a desk and in CI: installs what the tests need, checks the format,
# builds, runs every test, builds for Windows and runs the server and the unit tests under Wine, makes
# the packages and installs them into a bare system, and runs the unit tests under the address and
# undefined-behaviour sanitizers and clang-tidy over the sources. Ends with a line that counts passed and failed steps.
#
#   scripts/test.sh           all
#     --quick                 without Wine, the packages, the sanitizers and clang-tidy
#     --deep                  also what takes hours or finds little: the static analyzer, Valgrind, the
#                             tests that kill or pair jobs in every way, large sets, whether packages
#                             of one commit are the same bytes, and an hour of each fuzz target, two
#                             side by side (QUILLON_FUZZ_MINUTES: other minutes)
set -uo pipefail
cd "$(dirname "$0")/.."

quick=0
deep=0
for option in "$@"; do
  case $option in
    --quick) quick=1 ;;
    --deep) deep=1 ;;
    *) echo "usage: $0 [--quick | --deep]" >&2; exit 2 ;;
  esac
done

# What the steps over the Windows build and the packages print; the last line of each counts the tests.
windows_tests=$(mktemp)
package_tests=$(mktemp)
trap 'rm -f "$windows_tests" "$package_tests"' EXIT

passed=0
failed=()
step() {
  local name=$1
  shift
  echo "== $name"
  local began=$SECONDS
  if "$@"; then
    passed=$((passed + 1))
    echo "-- $name: ok ($((SECONDS - began)) s)"
  else
    failed+=("$name")
    echo "-- $name: FAILED ($((SECONDS - began)) s)"
  fi
}

sources() { git ls-files 'src/*.h' 'src/*.cpp' 'apps/*.h' 'apps/*.cpp' 'tests/*.h' 'tests/*.cpp' 'bench/*.cpp' 'fuzz/*.h' 'fuzz/*.cpp' 'docs/*.cpp'; }

format() { sources | grep -v '/tables/' | xargs clang-format --dry-run --Werror; }
dictionary() { python3 scripts/make_dictionary.py --check; }
layers() { python3 scripts/check_layers.py; }
build() { cmake --preset "$1" >/dev/null && cmake --build --preset "$1"; }
release() { build release && ctest --preset release -j "$(nproc)"; }
windows() { build windows-x86; }
# Where Wine is cannot be told by the packages alone: it may lie in a system tree of its own.
on_windows() {
  local place=(--no-wine)
  [ "$1" = system ] && place=()
  [ -d "$1" ] && place=(--tree "$1")
  python3 tests/com_client/server_test.py build/release build/windows-x86 "${place[@]}" |
    tee "$windows_tests"
}
made_packages() {
  ./scripts/package.sh &&
    python3 -B tests/packages/packages_test.py build/release build/packages | tee "$package_tests"
}
# Two clones in places of their own, without the compiler's cache: nothing of the one in the other.
reproducible() {
  local place clone result=0
  place=$(mktemp -d)
  # Of one commit, also when another one is made meanwhile.
  git clone -q . "$place/one" && git clone -q "$place/one" "$place/elsewhere" || result=1
  for clone in one elsewhere; do
    (cd "$place/$clone" && CCACHE_DISABLE=1 ./scripts/package.sh >/dev/null) || result=1
  done
  diff "$place/one/build/packages/SHA256SUMS" "$place/elsewhere/build/packages/SHA256SUMS" || result=1
  rm -rf "$place"
  return "$result"
}
sanitizers() { build asan && ctest --preset asan -L unit -j "$(nproc)"; }
# Files of the Windows build or of one without libburn are not in this build's list of commands.
tidied() { sources | grep -E '^(src|apps)/.*\.cpp$' | grep -v -e '/tables/' -e '/windows/'; }
# Without the analyzer, which takes most of the time.
tidy() {
  tidied | xargs -P "$(nproc)" -n 1 clang-tidy -p build/release --quiet '--checks=-clang-analyzer-*' 2>/dev/null
}
# One file per run: the analyzer takes state of one file into the next and reports what is not there.
analyzer() {
  tidied | xargs -P "$(nproc)" -n 1 clang-tidy -p build/release --quiet 2>/dev/null
}
every_kill() { QUILLON_DEEP_TESTS=1 ctest --preset release -R '^cli_(kill|two_jobs|unfinished)$' --timeout 7200; }
large_sets() { QUILLON_DEEP_TESTS=1 ctest --preset release -R '^cli_load$' --timeout 7200; }
valgrind_tests() {
  local test
  for test in dicom_elements dicom_reading dicomdir dicomobjects fileset; do
    # The tests' own operator new must not be taken for the library's.
    valgrind --quiet --error-exitcode=1 --soname-synonyms=somalloc=nouserintercepts \
      "build/release/bin/${test}_test" --gtest_brief=1 || return 1
  done
}
# What is found lies in build/fuzz/crashes; the name of the input begins with that of its target.
fuzz_target() {
  local name=${1##*/fuzz_} found=build/fuzz/found/${1##*/fuzz_}
  mkdir -p "$found" build/fuzz/crashes
  if "$1" -max_total_time="$2" -timeout=30 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="build/fuzz/crashes/$name-" "$found" "fuzz/corpus/$name" 2>"$found.log"; then
    echo "fuzz_$name: $(grep -a 'DONE ' "$found.log" | tail -n 1)"
  else
    echo "fuzz_$name: FAILED"
    tail -n 60 "$found.log"
    return 1
  fi
}
export -f fuzz_target
fuzz() {
  build fuzz || return 1
  local seconds
  seconds=$(awk "BEGIN { printf \"%d\", 60 * ${QUILLON_FUZZ_MINUTES:-60} }")
  # Of 0 there would be no end.
  [ "$seconds" -gt 0 ] || return 1
  printf '%s\n' build/fuzz/bin/fuzz_* | xargs -P 2 -I{} bash -c 'fuzz_target {} '"$seconds"
}

packages=--test
[ "$deep" -eq 1 ] && packages=--deep
step "packages for building" ./scripts/setup.sh "$packages"
step "format" format
step "dictionary table" dictionary
step "layers" layers
step "release build and tests" release
step "windows-x86 build" windows
if [ "$quick" -eq 1 ]; then
  step "the DLL without Wine" on_windows none
elif wine=$(./scripts/wine.sh); then
  step "the DLL under Wine" on_windows "$wine"
else
  echo "== the DLL under Wine: SKIPPED, Wine cannot be had (the reason stands above)"
  step "the DLL without Wine" on_windows none
fi
if [ "$quick" -eq 0 ]; then
  step "packages for users" made_packages
  step "sanitizers" sanitizers
  if [ "$deep" -eq 0 ]; then
    step "clang-tidy" tidy
  else
    step "clang-tidy with the analyzer" analyzer
    step "every kill and pair" every_kill
    step "large sets" large_sets
    step "Valgrind" valgrind_tests
    step "reproducible packages" reproducible
    step "fuzzing" fuzz
  fi
fi

[ "${#failed[@]}" -gt 0 ] && printf 'failed step: %s\n' "${failed[@]}"
grep '^Windows tests: ' "$windows_tests" || echo "Windows tests: not known, the step ended before its count"
if [ "$quick" -eq 0 ]; then
  grep '^Bare system: ' "$package_tests" || echo "Bare system: not known, the step ended before its count"
fi
echo "$passed passed, ${#failed[@]} failed"
[ "${#failed[@]}" -eq 0 ]
