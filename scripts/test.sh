#!/usr/bin/env bash
# Sets up, builds and runs the whole test suite; ends with ctest's summary.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" "$root/build" -DCOMMON_BUILD_TESTS=ON -DCOMMON_BUILD_BENCH=ON -DCOMMON_BUILD_EXAMPLES=ON
cd "$root/build"
ctest -j "$(nproc)" --output-on-failure --no-tests=error
