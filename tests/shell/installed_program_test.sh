#!/usr/bin/env bash
# Installs the build into a temporary prefix and runs the installed program:
# it must find its files in <prefix>/share/tolvane, make its settings folder
# in $XDG_CONFIG_HOME/tolvane and paint every view.
# Usage: installed_program_test.sh BUILD_DIR
set -euo pipefail
build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/prefix" >/dev/null
for file in bin/tolvane bin/tolvane-tool share/tolvane/tolvane_ENU.dat share/tolvane/Alarm.wav \
            lib/tolvane/GID.QX.so share/applications/org.tolvane.Tolvane.desktop \
            share/metainfo/org.tolvane.Tolvane.metainfo.xml \
            share/icons/hicolor/scalable/apps/org.tolvane.Tolvane.svg; do
  [ -e "$work/prefix/$file" ] || { echo "not installed: $file"; exit 1; }
done

mkdir -m 700 "$work/runtime"
env -u TOLVANE_HOME XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/runtime" \
  HOME="$work" "$work/prefix/bin/tolvane" --screenshot "$work/pictures" --at 5 >"$work/out"
[ -d "$work/config/tolvane" ] || { echo "no settings folder in \$XDG_CONFIG_HOME"; exit 1; }
[ "$(wc -l <"$work/out")" -eq 7 ] || { echo "not seven pictures:"; cat "$work/out"; exit 1; }
# The demo recording came from the installed resources: the default replay.
for picture in gps-info satellites compass speed trip-stat world-map map; do
  [ -s "$work/pictures/$picture.png" ] || { echo "missing $picture.png"; exit 1; }
done
