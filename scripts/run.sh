#!/usr/bin/env bash
# Builds the program and runs it. Until the window exists this shows the
# command-line companion at work: it writes a fresh settings record and
# prints every field of it.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh >&2
cmake --preset release >&2
cmake --build --preset release -j "$(nproc)" >&2

record=$(mktemp --suffix=.dat)
trap 'rm -f "$record"' EXIT
build/release/bin/tolvane-tool options reset "$record"
build/release/bin/tolvane-tool options dump "$record"
