#!/usr/bin/env bash
# Runs the programs installed under PREFIX as a user would, in a home of
# their own: tolvane paints every view of the demo recording from the
# installed resources and makes its settings folder in $XDG_CONFIG_HOME;
# tolvane-tool replays a recording and loads the companion library. The
# installed desktop entry, AppStream metadata and manual pages must
# validate. Names what is wrong and exits 1 at the first fault.
# Usage: check_installed_program.sh PREFIX
set -euo pipefail
prefix=$1
root=$(cd "$(dirname "$0")/../.." && pwd)
recording=$root/tests/data/gpsd/haicom-305N.log
replay_summary="$recording: 74 ticks, 68 fixes, 0 dropped sentences (0 checksum failures, 0 broken)"

fail() {
  echo "check_installed_program: $*" >&2
  exit 1
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -m 700 "$work/runtime"
# No gpsd of the machine answers on port 1, and the texts are English.
user=(env -u TOLVANE_HOME HOME="$work" XDG_CONFIG_HOME="$work/config"
  XDG_RUNTIME_DIR="$work/runtime" GPSD_PORT=1 TZ=UTC LC_ALL=C.UTF-8)

for file in Alarm.wav README.md; do
  [ -s "$prefix/share/tolvane/$file" ] || fail "$file is not installed"
done
# The demo recording, the default replay, comes from the installed resources.
"${user[@]}" QT_QPA_PLATFORM=offscreen "$prefix/bin/tolvane" --screenshot "$work/pictures" \
  --size 240x320 --at 5 >"$work/pictures.txt" || fail "tolvane --screenshot failed"
[ -d "$work/config/tolvane" ] || fail "tolvane made no settings folder in \$XDG_CONFIG_HOME"
[ "$(wc -l <"$work/pictures.txt")" -eq 7 ] || fail "not seven pictures: $(cat "$work/pictures.txt")"
for view in gps-info satellites compass speed trip-stat world-map map; do
  [ -s "$work/pictures/$view.png" ] || fail "tolvane --screenshot painted no $view.png"
done

"${user[@]}" "$prefix/bin/tolvane-tool" replay "$recording" >"$work/replay" ||
  fail "tolvane-tool replay failed"
[ "$(cat "$work/replay")" = "$replay_summary" ] ||
  fail "tolvane-tool replay said '$(cat "$work/replay")', not '$replay_summary'"

# The companion library is found where the install put it: a watch of gpsd
# loads it and gets as far as asking gpsd.
"${user[@]}" "$prefix/bin/tolvane-tool" watch --source gid --seconds 1 >"$work/watch" 2>&1 || true
grep -q "The GPS service could not be opened" "$work/watch" ||
  fail "tolvane-tool did not load GID.QX.so: $(cat "$work/watch")"

desktop-file-validate "$prefix/share/applications/org.tolvane.Tolvane.desktop" ||
  fail "the desktop entry does not validate"
appstreamcli validate --no-net "$prefix/share/metainfo/org.tolvane.Tolvane.metainfo.xml" \
  >"$work/appstream" || fail "the AppStream metadata does not validate: $(cat "$work/appstream")"
[ -s "$prefix/share/icons/hicolor/scalable/apps/org.tolvane.Tolvane.svg" ] || fail "no icon"
for page in tolvane tolvane-tool; do
  warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -l "$prefix/share/man/man1/$page.1.gz" \
    2>&1 >/dev/null) || fail "man cannot show $page.1"
  [ -z "$warnings" ] || fail "groff warns about the manual page $page.1: $warnings"
done
