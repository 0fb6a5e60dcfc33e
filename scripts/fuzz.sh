#!/usr/bin/env bash
# Builds the libFuzzer targets (clang) and runs the NMEA parser's fuzzer for
# a bounded time over a seed corpus made from the receiver captures in
# tests/data/gpsd. Exits non-zero when the fuzzer finds a crash; the input
# that crashed is left in build/fuzz/nmea_parser/artifacts.
#
# Usage: scripts/fuzz.sh [SECONDS]    (default 60)
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
if ! [[ $seconds =~ ^[0-9]+$ ]] || [ "$seconds" -eq 0 ]; then
  echo "usage: scripts/fuzz.sh [SECONDS]" >&2
  exit 2
fi

cmake --preset fuzz
cmake --build --preset fuzz -j 2 --target nmea_parser_fuzz

work=build/fuzz/nmea_parser
seeds=$work/seeds
rm -rf "$seeds"
mkdir -p "$seeds" "$work/corpus" "$work/artifacts"

# Each seed is three control bytes (read size and parse pace) and a piece of
# a capture of at most 4000 bytes, cut at line ends.
index=0
for capture in tests/data/gpsd/*.log; do
  pieces=$(mktemp -d)
  split -C 4000 -a 3 "$capture" "$pieces/piece-"
  for piece in "$pieces"/piece-*; do
    control=$(printf '\\x%02x\\x%02x\\x%02x' $((index * 37 % 256)) $((index % 4)) $((index % 8)))
    { printf "$control"; cat "$piece"; } >"$seeds/$(basename "$capture" .log)-$(basename "$piece")"
    index=$((index + 1))
  done
  rm -rf "$pieces"
done

build/fuzz/bin/nmea_parser_fuzz \
  -max_total_time="$seconds" -max_len=8192 -timeout=10 -print_final_stats=1 \
  -artifact_prefix="$work/artifacts/" "$work/corpus" "$seeds"
