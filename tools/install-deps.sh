#!/usr/bin/env bash
# Installs the Debian packages that building, playing and testing Vorta need,
# but only those that are missing, so a second run costs nothing.
set -euo pipefail

packages=(
  build-essential cmake pkg-config
  libsdl1.2-dev libsdl-image1.2-dev libsdl-net1.2-dev libsdl-mixer1.2-dev
  libgl1-mesa-dev libglu1-mesa-dev libgl1-mesa-dri
  libpng-dev libfreetype-dev fonts-dejavu-core libmp3lame-dev libvorbis-dev
  libgtest-dev googletest libbenchmark-dev
  xvfb xauth
  clang clang-format libfuzzer-14-dev
  xdotool x11-apps
  sox
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing missing packages: ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
