#!/usr/bin/env bash
# Builds in release mode and runs the benchmarks with their peer ratios.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" "$root/build-release" -DCMAKE_BUILD_TYPE=Release -DCOMMON_BUILD_TESTS=OFF
"$root/build-release/bench/common_bench" "$@"
