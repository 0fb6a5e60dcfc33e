#!/usr/bin/env bash
# Measures the running window on the demo receiver: the time from starting
# the program to its first painted frame, then, over a minute, the share of
# one core it takes and its resident memory. Targets: first frame under
# 300 ms, at most 0.25 % of a core and 50 MB.
#
# Usage: tools/bench/window_bench.sh [SECONDS] [PROGRAM]
#   SECONDS  how long to measure the running program (default 60)
#   PROGRAM  the program to measure (default build/release/bin/tolvane)
# Without a display it starts its own Xvfb for the run.
set -euo pipefail
cd "$(dirname "$0")/../.."

seconds=${1:-60}
program=${2:-build/release/bin/tolvane}
[ -x "$program" ] || { echo "no program at $program: build the release preset first" >&2; exit 1; }

work=$(mktemp -d)
pids=()
cleanup() {
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  rm -rf "$work"
}
trap cleanup EXIT

if [ -z "${DISPLAY:-}" ]; then
  display=:$((90 + RANDOM % 9))
  Xvfb "$display" -screen 0 1280x1024x24 >/dev/null 2>&1 &
  pids+=($!)
  export DISPLAY=$display
  sleep 1
fi

# A program folder of the run's own, holding a settings record as after any
# earlier run: without one, the settings load retries for most of a second
# before falling back to the defaults, which only the very first start sees.
mkdir -p "$work/runtime" "$work/home" "$work/program"
chmod 700 "$work/runtime"
for file in tolvane_ENU.dat Alarm.wav demo.nmea; do
  cp "$(dirname "$program")/$file" "$work/program/"
done
"$(dirname "$program")/tolvane-tool" options reset "$work/program/Options.dat" >/dev/null
started=$(date +%s%3N)
XDG_RUNTIME_DIR="$work/runtime" HOME="$work/home" TOLVANE_DEBUG=1 \
  "$program" --demo --home "$work/program" 2>"$work/trace" &
pid=$!
pids+=($pid)

for _ in $(seq 100); do
  grep -q "first frame painted at" "$work/trace" && break
  sleep 0.05
done
painted=$(sed -n 's/.*first frame painted at \([0-9]*\) ms.*/\1/p' "$work/trace" | head -1)
[ -n "$painted" ] || { echo "the program painted no frame" >&2; cat "$work/trace" >&2; exit 1; }

# The demo receiver needs a few seconds to reach its first fix; measure after.
sleep 5
ticks_per_second=$(getconf CLK_TCK)
cpu_ticks() { awk '{print $14 + $15}' "/proc/$pid/stat"; }
before=$(cpu_ticks)
sleep "$seconds"
after=$(cpu_ticks)
rss_kb=$(awk '/^VmRSS:/ {print $2}' "/proc/$pid/status")
peak_kb=$(awk '/^VmHWM:/ {print $2}' "/proc/$pid/status")

awk -v ms=$((painted - started)) -v used=$((after - before)) -v hz="$ticks_per_second" \
    -v s="$seconds" -v rss="$rss_kb" -v peak="$peak_kb" 'BEGIN {
  printf "first frame: %d ms (target < 300 ms)\n", ms
  printf "CPU: %.3f %% of one core over %d s (target <= 0.25 %%)\n", 100 * used / hz / s, s
  printf "resident memory: %.1f MB, peak %.1f MB (target <= 50 MB)\n", rss / 1024, peak / 1024
}'
