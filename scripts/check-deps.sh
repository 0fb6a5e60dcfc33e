#!/usr/bin/env bash
# Checks that every Debian package the build really used is one that
# scripts/install-deps.sh installs, so that a package installed by hand on
# one machine cannot make the build pass there and fail on a fresh one.
#
# The headers come from the compilers' own dependency records (ninja -t deps)
# of each build folder given, and the programs the tests run from the build's
# CMake cache. Each file's package (dpkg -S) must be listed in install-deps.sh
# or be one of their dependencies (apt-cache depends --recurse, Depends and
# PreDepends only), be part of build-essential, or be of priority required or
# important, which every Debian system has. Exits 1 naming each package that
# is none of these, and each file that belongs to no package.
#
# Usage: scripts/check-deps.sh [BUILD_DIR...]    (default: build/dev)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

builds=("$@")
[ ${#builds[@]} -gt 0 ] || builds=(build/dev)

# The files from outside the repository that the builds read. A compiler
# names some of them through "..", which dpkg does not know.
used_files() {
  local build
  for build in "${builds[@]}"; do
    ninja -C "$build" -t deps | sed -n 's/^    \(\/.*\)$/\1/p'
    sed -n 's/^TOLVANE_[A-Z_]*_PROGRAM:FILEPATH=\(\/.*\)$/\1/p' "$build/CMakeCache.txt"
  done | sort -u | xargs -r realpath -s -m -- | grep -v "^$root/" | sort -u
}

# The package of each file, as "package path" lines, and "(no package)
# path" for a file of none. A merged /usr makes some files known to dpkg
# only under their other name, so a file dpkg does not know is looked up
# again by its real path, and by that path without /usr (/usr/bin/gzip is
# the /bin/gzip of its package).
owning_packages() {
  local files found unknown real
  files=$(cat)
  found=$(xargs -r dpkg -S <<<"$files" 2>/dev/null |
    sed -n 's/^\([^:,]*\)\(:[a-z0-9]*\)\?: \(.*\)$/\1 \3/p')
  echo "$found"
  unknown=$(comm -23 <(echo "$files") <(cut -d' ' -f2- <<<"$found" | sort -u))
  for file in $unknown; do
    real=$(realpath -e -- "$file")
    { dpkg -S "$real" "${real#/usr}" 2>/dev/null || true; } |
      sed -n "s|^\([^:,]*\)\(:[a-z0-9]*\)\?: .*$|\1 $file|p" | grep . ||
      echo "(no package) $file"
  done
}

# Every package that install-deps.sh and build-essential bring, with their
# dependencies. Working this out takes seconds, so it is kept in the build
# folder for as long as the list and the package index stay the same.
allowed_packages() {
  local listed key cache
  listed=$(scripts/install-deps.sh --list)
  key=$( (echo "$listed"; stat -c %Y /var/cache/apt/pkgcache.bin 2>/dev/null || true) |
    md5sum | cut -c1-16)
  cache=${builds[0]}/deps-allowed-$key.txt
  if [ ! -s "$cache" ]; then
    rm -f "${builds[0]}"/deps-allowed-*.txt
    apt-cache depends --recurse --no-recommends --no-suggests --no-conflicts --no-breaks \
      --no-replaces --no-enhances $listed build-essential |
      sed -n 's/^\([a-z0-9][^ <>:]*\)\(:[a-z0-9]*\)\?$/\1/p' | sort -u >"$cache.new"
    mv "$cache.new" "$cache"
  fi
  cat "$cache"
}

used=$(used_files | owning_packages | sort -u)
allowed=$(allowed_packages)
failed=0
for package in $(grep -v '^(no package)' <<<"$used" | cut -d' ' -f1 | sort -u); do
  if grep -qxF "$package" <<<"$allowed"; then continue; fi
  priority=$(dpkg-query -W -f='${Priority}' "$package" 2>/dev/null || true)
  if [ "$priority" = required ] || [ "$priority" = important ]; then continue; fi
  example=$(grep -m1 "^$package " <<<"$used" | cut -d' ' -f2)
  echo "check-deps: the build uses $package ($example) but scripts/install-deps.sh" \
    "does not install it; add it there" >&2
  failed=1
done
for file in $(sed -n 's/^(no package) //p' <<<"$used"); do
  echo "check-deps: the build uses $file, which no Debian package installed" >&2
  failed=1
done
[ $failed -eq 0 ] && echo "check-deps: every package the build uses is listed"
exit $failed
