#!/bin/sh
# Builds the benchmarks (Release) and times the legacy report conversion on 100,000 and 1,000,000
# line reports, with the ratio between them and against a plain copy of the same bytes.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build="$root/build-bench"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTROVAN_BENCH=ON -DTROVAN_TESTS=OFF >/dev/null
ninja -C "$build" legacy_bench >/dev/null
"$build/bench/legacy_bench"
