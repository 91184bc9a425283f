#!/bin/bash
# Builds the benchmarks (Release) and runs the RXL trustee file import benchmark:
# bench/rxl_import.sh [ENTRIES]   (default 1000000)
set -eu
cd "$(dirname "$0")/.."
cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DTROVAN_BENCH=ON -DTROVAN_TESTS=OFF >/dev/null
ninja -C build-bench rxl_import_bench >/dev/null
build-bench/bench/rxl_import_bench "${1:-1000000}"
