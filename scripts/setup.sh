#!/usr/bin/env bash
# Installs what the build needs on a Debian machine, and nothing when all is there.
# Quiet when there is nothing to do; needs root (or sudo) only when it installs.
set -euo pipefail

packages=(
  build-essential cmake ninja-build ccache pkg-config
  qtbase5-dev qtbase5-dev-tools libqt5sql5-sqlite libqt5svg5-dev
  libnetcdf-dev netcdf-bin
  libpwizlite-dev libboost-dev topp
  clang libclang-rt-dev clang-format
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "setup: need root to install: ${missing[*]}" >&2; exit 1; }
  sudo="sudo"
fi
echo "setup: installing ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq >/dev/null
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
