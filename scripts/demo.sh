#!/usr/bin/env bash
# Sets up, builds and runs the demo host.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" "$root/build-demo" -DCOMMON_BUILD_TESTS=OFF -DCOMMON_BUILD_BENCH=OFF -DCOMMON_BUILD_EXAMPLES=ON
"$root/build-demo/examples/common_host"
