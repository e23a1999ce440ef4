#!/usr/bin/env bash
# Installs the Debian packages the library builds with. Safe to run again.
set -euo pipefail
packages=(build-essential cmake pkg-config qtbase5-dev libpcre2-dev zlib1g-dev
          libgtest-dev libgmock-dev libbenchmark-dev clang libclang-rt-14-dev)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
