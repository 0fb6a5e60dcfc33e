#!/usr/bin/env bash
# Builds the program and runs it on the demo receiver. Until the window
# exists, this is the command-line companion replaying the demo recording
# through the real GPS pipeline: one JSON line of the GPS state per second,
# then a summary, with the track written as GPX into a temporary folder.
#
# Usage: scripts/run.sh [LOG]    (default: the built-in demo recording)
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh >&2
cmake --preset release >&2
cmake --build --preset release -j "$(nproc)" >&2

recording=${1:-resources/demo/demo.nmea}
tracks=$(mktemp -d)
trap 'rm -rf "$tracks"' EXIT
tool=build/release/bin/tolvane-tool

"$tool" replay "$recording" --json --track-format gpx --interval 1 --out "$tracks"
"$tool" replay "$recording"
echo "track: $(ls "$tracks")"
