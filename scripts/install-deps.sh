#!/usr/bin/env bash
# Installs every Debian package that boardlib's build and tests need.
# Idempotent: packages already present are not touched, and apt is only
# consulted when something is missing.
set -euo pipefail

PACKAGES=(
  g++ cmake make pkg-config clang-format
  libgtest-dev libgmock-dev
  libboost-dev libboost-filesystem-dev libboost-iostreams-dev
  libboost-regex-dev libboost-thread-dev
  libxerces-c-dev libpugixml-dev libtbb-dev
  tcl8.6 tcl8.6-dev python3 python3-dev zlib1g-dev
  clang libclang-rt-14-dev
)

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
echo "install-deps: installing ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
