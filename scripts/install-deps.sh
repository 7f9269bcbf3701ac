#!/usr/bin/env bash
# Installs the Debian 12 packages the build, the tests and the examples need.
# Idempotent and quiet: when everything is present it prints nothing and
# touches nothing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  liblua5.1-0-dev libboost-dev
  libfreetype-dev fonts-dejavu-core libpng-dev
  libepoxy-dev libegl-dev libegl-mesa0 libgl1-mesa-dri libsdl2-dev
  libgtest-dev libgmock-dev libbenchmark-dev libimgui-dev
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "install-deps: installing ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
