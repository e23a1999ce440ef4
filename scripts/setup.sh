#!/usr/bin/env bash
# Installs the Debian packages the library builds with. Safe to run again.
set -euo pipefail
packages=(build-essential cmake pkg-config qtbase5-dev libpcre2-dev zlib1g-dev
          libgtest-dev libgmock-dev libbenchmark-dev clang libclang-rt-14-dev locales)
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
# A decimal-comma locale, for the tests that numbers ignore the host's locale.
if ! locale -a 2>/dev/null | grep -qi '^de_DE\.utf-\?8$'; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo localedef -i de_DE -f UTF-8 de_DE.UTF-8 || echo "note: no de_DE.UTF-8 locale; its test will be skipped"
fi
