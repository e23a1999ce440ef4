#!/usr/bin/env bash
# Configures and builds one tree. Usage: build.sh <build dir> [cmake options...]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=$1; shift
werror=OFF
[ "${CI:-}" = "true" ] && werror=ON
cmake -S "$root" -B "$dir" -DCOMMON_WERROR=$werror "$@" >/dev/null
cmake --build "$dir" -j "$(nproc)"
