#!/usr/bin/env bash
# Installs every Debian package that boardlib's build and tests need.
# Idempotent: packages already present are not touched, and apt is only
# consulted when something is missing. Where it cannot install (no dpkg or
# apt-get, or not root and no sudo), it says what to install and leaves the
# build to find out whether the libraries are there.
set -euo pipefail

PACKAGES=(
  g++ cmake make pkg-config clang-format
  libgtest-dev libgmock-dev
  libboost-dev libboost-filesystem-dev libboost-iostreams-dev
  libboost-regex-dev libboost-thread-dev
  libxerces-c-dev libpugixml-dev libtbb-dev
  tcl8.6 tcl8.6-dev python3 python3-dev zlib1g-dev
  clang libclang-rt-14-dev
  chromium chromium-driver
)

cannot_install() {
  echo "install-deps: $1; boardlib needs these packages (Debian names):" >&2
  echo "  ${missing[*]:-${PACKAGES[*]}}" >&2
  echo "install-deps: install them (or their equivalents), then build again;" \
    "make SKIP_DEPS=1 skips this step." >&2
  exit 0
}

missing=()
if ! command -v dpkg-query >/dev/null 2>&1; then
  cannot_install "no dpkg-query here, so the packages cannot be checked"
fi
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

command -v apt-get >/dev/null 2>&1 || cannot_install "no apt-get here"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null 2>&1 || cannot_install "not root, and no sudo here"
  SUDO="sudo"
fi
echo "install-deps: installing ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
