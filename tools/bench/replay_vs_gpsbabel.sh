#!/usr/bin/env bash
# Prints the NMEA parser's throughput on a recording of GP sentences, then
# times on one large NMEA recording, in UTC: gpsbabel converting it to GPX,
# the replay converting it to a GPX track with a point every second, and the
# replay alone; and prints how many times faster than gpsbabel each replay
# is (the goals: 5 times for the conversion, 20 for the replay alone).
#
#   tools/bench/replay_vs_gpsbabel.sh [COPIES] [RUNS]
#
# The recording is the GP-only receiver captures of the shared corpus
# (TOLVANE_CORPUS_DIR, else ../shared/corpus beside the repository; the
# copies in tests/data when neither exists), joined COPIES times (default
# 200). Each program reads it RUNS times (default 3); the ratio is taken
# from the processor time (user + system), which a busy machine disturbs
# less than the wall-clock time, and the wall-clock ratio is shown beside it.
set -euo pipefail

copies=${1:-200}
runs=${2:-3}
root=$(cd "$(dirname "$0")/../.." && pwd)
corpus=${TOLVANE_CORPUS_DIR:-$root/../shared/corpus}/gpsd-logs
captures=(GPSmap-76S bu353s4 telit-he910 haicom-305N myguide-3100 polarx2 quectel navika-100-fix)

command -v gpsbabel >/dev/null || { echo "gpsbabel is not installed" >&2; exit 1; }

cd "$root"
cmake --preset release >/dev/null
cmake --build build/release -j2 --target tolvane-tool tolvane_bench >/dev/null
tool=$root/build/release/bin/tolvane-tool

# The parser alone, on the GP-only recording, as the benchmark measures it.
"$root/build/release/bin/tolvane_bench" --benchmark_filter='BM_ParseNmeaBuffer/gp_sentences' \
    --benchmark_min_time=2 2>/dev/null |
    sed -n 's/.*bytes_per_second=\([^ ]*\).*/parser:   \1 on GP sentences/p'

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
recording=$work/recording.log
sources=()
for name in "${captures[@]}"; do
    for folder in "$corpus" "$root/tests/data/gpsd"; do
        if [[ -f $folder/$name.log ]]; then
            sources+=("$folder/$name.log")
            break
        fi
    done
done
for ((copy = 0; copy < copies; copy++)); do cat "${sources[@]}"; done >"$recording"
echo "recording: ${#sources[@]} captures x $copies = $(stat -c %s "$recording") bytes"

# Runs a command RUNS times; prints "wall cpu" in seconds, summed.
measure() {
    local wall=0 cpu=0 line
    for ((run = 0; run < runs; run++)); do
        line=$({ TIMEFORMAT='%R %U %S'; time "$@" >/dev/null 2>&1; } 2>&1)
        read -r w u s <<<"$line"
        wall=$(awk -v a="$wall" -v b="$w" 'BEGIN { print a + b }')
        cpu=$(awk -v a="$cpu" -v b="$u" -v c="$s" 'BEGIN { print a + b + c }')
    done
    echo "$wall $cpu"
}

export TZ=UTC
"$tool" replay "$recording"
mkdir "$work/tracks"
read -r babelWall babelCpu < <(measure gpsbabel -i nmea -f "$recording" -o gpx -F "$work/babel.gpx")
read -r convertWall convertCpu < <(measure "$tool" replay "$recording" --track-format gpx \
    --interval 1 --out "$work/tracks")
read -r replayWall replayCpu < <(measure "$tool" replay "$recording")

awk -v bw="$babelWall" -v bc="$babelCpu" -v cw="$convertWall" -v cc="$convertCpu" \
    -v rw="$replayWall" -v rc="$replayCpu" -v n="$runs" 'BEGIN {
    printf "gpsbabel to GPX:   %.3f s processor, %.3f s wall per run\n", bc / n, bw / n
    printf "replay to GPX:     %.3f s processor, %.3f s wall per run\n", cc / n, cw / n
    printf "replay alone:      %.3f s processor, %.3f s wall per run\n", rc / n, rw / n
    printf "replay to GPX is %.1f times faster than gpsbabel (processor time), %.1f times (wall time); the goal is 5\n",
           bc / cc, bw / cw
    printf "replay alone is %.1f times faster than gpsbabel (processor time), %.1f times (wall time); the goal is 20\n",
           bc / rc, bw / rw
}'
