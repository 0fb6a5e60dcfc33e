#!/usr/bin/env bash
# Installs the Debian packages the project needs, only those still missing.
# Runs apt-get as root, or through sudo for a normal user. With --list it
# only prints the list, one package a line (scripts/check-deps.sh reads it).
set -euo pipefail

packages=(
  cmake ninja-build g++ clang pkg-config
  libgtest-dev libbenchmark-dev
  nlohmann-json3-dev
  gpsd espeak-ng gpsbabel libxml2-utils libxml2-dev libpng-dev libsqlite3-dev
  qt6-base-dev qt6-multimedia-dev qt6-connectivity-dev qt6-image-formats-plugins libgl-dev fonts-dejavu-core
  # the glyphs of the Chinese texts, and Qt's own words in each language
  fonts-droid-fallback qt6-translations-l10n
  xvfb xdotool imagemagick desktop-file-utils appstream dbus-daemon
  xplanet-images gdal-bin
  dpkg-dev file lintian man-db groff-base
)

if [ "${1:-}" = --list ]; then
  printf '%s\n' "${packages[@]}"
  exit 0
fi

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$package")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  as_root=(sudo)
fi
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
  "${missing[@]}"
