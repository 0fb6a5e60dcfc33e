#!/usr/bin/env bash
# Builds one libFuzzer target (clang) and runs it for a bounded time over
# its seed corpus: the files of tools/fuzz/corpus/TARGET, and for the NMEA
# parser pieces of the receiver captures in tests/data/gpsd. The inputs the
# fuzzer adds are kept in build/fuzz/TARGET/corpus. Exits non-zero when the
# fuzzer finds a fault; the input is left in build/fuzz/TARGET/artifacts and
# belongs in tools/fuzz/corpus/TARGET once the fault is mended, where every
# later run plays it again.
#
# Usage: scripts/fuzz.sh TARGET [SECONDS]    (default 60)
# TARGET: nmea_parser, language_file, options, point_file, track_log,
# gpsd_reports, gpx_kml, map_calibration or tile_source.
set -euo pipefail
cd "$(dirname "$0")/.."

targets="nmea_parser language_file options point_file track_log gpsd_reports gpx_kml map_calibration tile_source"
target=${1:-}
seconds=${2:-60}
if ! [[ " $targets " == *" $target "* ]] || ! [[ $seconds =~ ^[0-9]+$ ]] || [ "$seconds" -eq 0 ]; then
  echo "usage: scripts/fuzz.sh TARGET [SECONDS]; TARGET is one of: $targets" >&2
  exit 2
fi

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j 2 --target "${target}_fuzz"

work=build/fuzz/$target
seeds=$work/seeds
rm -rf "$seeds"
mkdir -p "$seeds" "$work/corpus" "$work/artifacts"
if [ -d "tools/fuzz/corpus/$target" ]; then cp tools/fuzz/corpus/"$target"/* "$seeds"/; fi

# Each NMEA seed is three control bytes (read size and parse pace) and a
# piece of a capture of at most 4000 bytes, cut at line ends.
if [ "$target" = nmea_parser ]; then
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
fi

build/fuzz/bin/"${target}_fuzz" \
  -max_total_time="$seconds" -max_len=8192 -timeout=10 -rss_limit_mb=1024 -print_final_stats=1 \
  -artifact_prefix="$work/artifacts/" "$work/corpus" "$seeds"
