#!/usr/bin/env bash
# Builds the Debian package (the package preset), checks it with lintian
# (no error, and no warning but those its overrides keep), installs it with
# apt-get, runs the installed programs and validates the installed desktop
# entry, AppStream metadata and manual pages
# (tests/shell/check_installed_program.sh), purges the package and fails
# when /usr does not hold the same files as before.
#
# The package goes into a throwaway root: an overlay over / in a mount
# namespace of its own, so that the machine itself never sees the package.
# Where the machine allows no such overlay (no overlayfs, no namespaces), it
# goes into the system itself and is purged again however the test ends.
# Installing needs root: as another user the install runs through sudo.
#
# Usage: scripts/install-test.sh
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

fail() {
  echo "install-test: $*" >&2
  exit 1
}

# Installs the package, checks it and purges it, on the system this runs
# on, as root. /usr must hold the same files afterwards as before.
install_check_purge() {
  local deb=$1 work
  work=$(mktemp -d)
  find /usr -xdev | sort >"$work/usr-before"
  # Whatever happens from here on, the package does not stay.
  trap "apt-get purge -y -qq tolvane >/dev/null 2>&1 || true; rm -rf '$work'" EXIT
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "$deb" \
    >/dev/null || fail "apt-get could not install $deb"
  tests/shell/check_installed_program.sh /usr
  DEBIAN_FRONTEND=noninteractive apt-get purge -y -qq tolvane >/dev/null ||
    fail "apt-get could not purge tolvane"
  find /usr -xdev | sort >"$work/usr-after"
  diff -u "$work/usr-before" "$work/usr-after" >&2 ||
    fail "purging the package left /usr changed (above)"
  echo "install-test: installed, ran and purged $(basename "$deb"); /usr is as it was"
}

# Runs COMMAND... as root, chrooted into an overlay of / whose changes go to
# a tmpfs, in a mount namespace that ends with the command, so that nothing
# it installs reaches the machine. The repository is the same folder inside.
in_throwaway_root() {
  local scratch status=0
  scratch=$(mktemp -d)
  "${as_root[@]}" unshare --mount --propagation private --fork -- \
    "$self" --throwaway-root "$scratch" "$@" || status=$?
  rmdir "$scratch"
  return $status
}

# The inside of in_throwaway_root, in its mount namespace.
throwaway_root() {
  local scratch=$1 merged=$1/merged folder
  shift
  mount -t tmpfs tolvane-install-test "$scratch"
  mkdir "$scratch/upper" "$scratch/work" "$merged"
  mount -t overlay tolvane-install-test \
    -o "lowerdir=/,upperdir=$scratch/upper,workdir=$scratch/work" "$merged"
  for folder in /proc /sys /dev "$root"; do
    mkdir -p "$merged$folder"
    mount --rbind "$folder" "$merged$folder"
  done
  exec chroot "$merged" "$@"
}

self=$(realpath -e -- "$0")
case "${1:-}" in
  --throwaway-root) shift; throwaway_root "$@" ;;
  --install-check-purge) install_check_purge "$2"; exit 0 ;;
esac

start=$SECONDS
scripts/install-deps.sh
rm -f build/package/tolvane_*.deb
cmake --preset package >/dev/null
cmake --build --preset package -j "$(nproc)"
deb=$(echo "$root"/build/package/tolvane_*.deb)
[ -f "$deb" ] || fail "the build made no package"
scripts/check-deps.sh build/package
lintian --fail-on error,warning "$deb" || fail "lintian found faults in $deb"

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
if in_throwaway_root true 2>/dev/null; then
  echo "install-test: installing into a throwaway root"
  in_throwaway_root "$self" --install-check-purge "$deb"
else
  dpkg-query -W -f='${Status}' tolvane 2>/dev/null | grep -q "install ok installed" &&
    fail "tolvane is installed on this machine; the test would purge it"
  echo "install-test: no throwaway root on this machine; installing into the system"
  "${as_root[@]}" "$self" --install-check-purge "$deb"
fi
echo "install-test: done in $((SECONDS - start)) s"
