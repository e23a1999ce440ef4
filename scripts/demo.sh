#!/usr/bin/env bash
# Sets up, builds and runs the demo host.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" "$root/build" -DCOMMON_BUILD_TESTS=OFF -DCOMMON_BUILD_BENCH=OFF
"$root/build/examples/common_host"
