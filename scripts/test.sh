#!/usr/bin/env bash
# Builds everything and runs every test: the developer build, then the core
# tests again under the address and undefined-behaviour sanitizers.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh

jobs=$(nproc)

cmake --preset dev
cmake --build --preset dev -j "$jobs"
ctest --test-dir build/dev --output-on-failure -j "$jobs"

cmake --preset asan -DTOLVANE_BUILD_BENCHMARKS=OFF
cmake --build --preset asan -j "$jobs" --target tolvane_core_tests
TZ=UTC ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  build/asan/bin/tolvane_core_tests

# A bounded fuzzing run of the NMEA parser under the sanitizers.
scripts/fuzz.sh 60
