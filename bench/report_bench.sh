#!/usr/bin/env bash
# trovanctl report benchmark: CSV by user and --effective-all against xmllint --stream on a
# 1,000,000-entry document, in one run (processor and wall time, peak memory), and the first
# render of the --html page in headless Chromium.
#   bench/report_bench.sh [ENTRIES] [RUNS]
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
. "$here/scripts/require.sh"
trovan_require_build_tools
build=${TROVAN_BENCH_BUILD:-$here/build-bench}
cmake -S "$here" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTROVAN_TESTS=OFF >/dev/null
ninja -C "$build" trovanctl >/dev/null
exec python3 "$here/bench/report_bench.py" "$build/trovanctl" "$(command -v chromium)" "$@"
