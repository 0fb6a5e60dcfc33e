#!/usr/bin/env bash
# Checks that every include of the project points down the ladder of floors
# below: a file may include files of its own floor and of the floors listed
# before it, never of a floor listed after it. A source folder that is on no
# floor fails too, so that a new folder gets its place on the ladder when it
# is made. The README's Layout section says what each floor holds.
#
#   scripts/check-layers.sh           check, print each include that points up
#   scripts/check-layers.sh --graph   also count the includes between floors
set -euo pipefail
cd "$(dirname "$0")/.."

# From the bottom up. The tests are one floor at the top: they may use any
# part of the product and each other's helpers.
floors=(
  core/base core/geo core/gps core/data core/nav core/maps core/state
  core/placement core/views core/app
  formats platform gid headless
  shell/dialogs shell
  tools/sounds tools/tolvane-tool tools/bench tools/fuzz
  tests
)
# Floors beside the core that may use it only up to a height: the adapters
# and readers serve the core's lower floors and never reach the
# application's state or its words.
ceilings=(formats=core/data platform=core/nav gid=core/gps)

graph=0
if [ "${1:-}" = --graph ]; then graph=1; fi

# One line per quoted include: "source-file included-path".
git ls-files -- '*.h' '*.cpp' '*.c' ':!tests/data/**' |
  while read -r file; do
    sed -n 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*"\([^"]*\)".*/\1/p' "$file" |
      while read -r included; do
        # A path from the repository root, else one beside the including file.
        if [ -f "$included" ]; then
          echo "$file $included"
        elif [ -f "$(dirname "$file")/$included" ]; then
          echo "$file $(dirname "$file")/$included"
        fi
      done
  done |
  awk -v floors="${floors[*]}" -v ceilings="${ceilings[*]}" -v graph="$graph" '
    BEGIN {
      count = split(floors, floor, " ")
      for (i = 1; i <= count; i++) rank[floor[i]] = i
      split(ceilings, pairs, " ")
      for (i in pairs) { split(pairs[i], pair, "="); ceiling[rank[pair[1]]] = rank[pair[2]] }
    }
    # The floor of a path: the longest listed folder it lies in.
    function FloorOf(path,    i, best, bestLength) {
      best = 0; bestLength = 0
      for (i = 1; i <= count; i++) {
        if (index(path, floor[i] "/") == 1 && length(floor[i]) > bestLength) {
          best = i; bestLength = length(floor[i])
        }
      }
      return best
    }
    {
      from = FloorOf($1); to = FloorOf($2)
      if (from == 0) { unplaced[$1] = 1; next }
      if (to == 0) { unplaced[$2] = 1; next }
      if (from != to) edges[floor[from] " -> " floor[to]]++
      if (to > from) {
        print "up the ladder: " $1 " includes " $2 " (" floor[from] " may not use " floor[to] ")"
        failed = 1
      } else if (to != from && (from in ceiling) && to > ceiling[from]) {
        print "above the ceiling: " $1 " includes " $2 " (" floor[from] " may use floors up to " floor[ceiling[from]] ")"
        failed = 1
      }
    }
    END {
      for (path in unplaced) {
        print "on no floor: " path " (add its folder to scripts/check-layers.sh)"
        failed = 1
      }
      if (graph) for (edge in edges) printf "%5d  %s\n", edges[edge], edge | "sort -k2"
      exit failed
    }'
echo "include ladder: every include points down"
