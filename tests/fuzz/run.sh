#!/usr/bin/env bash
# Builds the fuzz targets with clang and runs each for the given number of
# seconds (default 60), starting from the seeds in corpus/<target>. New inputs
# go to a scratch folder, so the seeds stay small; a crash, a leak, undefined
# behaviour or a time-out stops the run with its input under
# <build>/artifacts and a non-zero exit.
#   tests/fuzz/run.sh 45          FUZZ_BUILD_DIR=... picks the build folder
set -euo pipefail
seconds=${1:-60}
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
build=${FUZZ_BUILD_DIR:-$root/build-fuzz}
jobs=${FUZZ_BUILD_JOBS:-2}

cmake -S "$here" -B "$build" -DCMAKE_CXX_COMPILER="${FUZZ_CXX:-clang++}" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j "$jobs"

mkdir -p "$build/artifacts"
status=0
for program in "$build"/Fuzz*; do
  [ -x "$program" ] || continue
  name=$(basename "$program")
  scratch=$(mktemp -d)
  echo "== $name: $seconds s"
  if ! ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
      "$program" -max_total_time="$seconds" -max_len=160 -timeout=60 -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="$build/artifacts/$name-" \
        "$scratch" "$here/corpus/$name"; then
    echo "!! $name failed; its input is in $build/artifacts"
    status=1
  fi
  rm -rf "$scratch"
done
exit $status
