#!/usr/bin/env bash
# Builds the program (release) and opens its window on the demo receiver, a
# recorded walk played at the receiver's own pace. Arguments, when given, go
# to tolvane instead of --demo: scripts/run.sh --screenshot DIR --size 240x320.
# The configured receiver is read by the built program itself,
# build/release/bin/tolvane.
#
# On a machine without a display (neither DISPLAY nor WAYLAND_DISPLAY set)
# it paints every view of the demo recording into a folder instead and
# prints the paths of the pictures.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh >&2
cmake --preset release >&2
cmake --build --preset release -j "$(nproc)" --target tolvane >&2

program=build/release/bin/tolvane

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  pictures=${TMPDIR:-/tmp}/tolvane-screenshots
  echo "No display: painting the views of the demo recording instead." >&2
  exec "$program" --screenshot "$pictures" "$@"
fi

if [ $# -eq 0 ]; then
  exec "$program" --demo
fi
exec "$program" "$@"
