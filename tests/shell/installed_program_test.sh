#!/usr/bin/env bash
# Installs the build into a temporary prefix and checks the installed
# programs there (check_installed_program.sh): they must find their files
# from <prefix>/bin, however the prefix is called.
# Usage: installed_program_test.sh BUILD_DIR
set -euo pipefail
build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/prefix" >/dev/null
"$(dirname "$0")/check_installed_program.sh" "$work/prefix"
