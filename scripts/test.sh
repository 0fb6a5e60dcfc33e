#!/usr/bin/env bash
# Builds everything and runs every test: the check that every include points
# down the ladder of floors, the check that the build used only
# packages that install-deps.sh installs, the developer build's tests, the
# core tests again under the address and undefined-behaviour sanitizers,
# a bounded fuzzing run of every reader of outside input, and the install
# test of the Debian package (scripts/install-test.sh). Ends with one line
# that counts the tests that ran.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
# Every include points down the ladder of floors; fails before any build.
scripts/check-layers.sh

jobs=$(nproc)
logs=$(mktemp -d)
trap 'rm -rf "$logs"' EXIT

cmake --preset dev
cmake --build --preset dev -j "$jobs"
scripts/check-deps.sh build/dev
ctest --test-dir build/dev --output-on-failure -j "$jobs" | tee "$logs/ctest.log"

cmake --preset asan -DTOLVANE_BUILD_BENCHMARKS=OFF
cmake --build --preset asan -j "$jobs" --target tolvane_core_tests
TZ=UTC ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  build/asan/bin/tolvane_core_tests | tee "$logs/asan.log"

# A bounded fuzzing run of every reader of outside input under the
# sanitizers, about twenty seconds each.
for target in nmea_parser language_file options point_file track_log gpsd_reports gpx_kml \
  map_calibration tile_source; do
  scripts/fuzz.sh "$target" 20
done

# The Debian package: built, checked by lintian, installed, run and purged.
scripts/install-test.sh

developer=$(sed -n 's/.*tests passed, 0 tests failed out of \([0-9]*\).*/\1/p' "$logs/ctest.log")
sanitized=$(sed -n 's/^\[  PASSED  \] \([0-9]*\) tests\?\..*/\1/p' "$logs/asan.log")
echo "tests: $((developer + sanitized)) passed, 0 failed"
