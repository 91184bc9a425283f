#!/usr/bin/env bash
# Builds trovan and runs every test: the static checks (format, clang-tidy, include layering),
# a Release build with warnings as errors, then the same suite (unit tests and command-line
# transcripts under the simulator) built with AddressSanitizer and UndefinedBehaviorSanitizer, a
# fuzz smoke run, and the installed package passing the command-line transcripts.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/require.sh
trovan_require_build_tools

jobs=$(nproc 2>/dev/null || echo 2)

run_suite() {
  local dir=$1
  shift
  echo "== build $dir ($*)"
  cmake -S . -B "$dir" -G Ninja "$@" >/dev/null
  ninja -C "$dir"
  echo "== tests $dir"
  ctest --test-dir "$dir" --output-on-failure -j "$jobs"
}

echo "== static checks"
scripts/static_checks.sh
run_suite build/release -DCMAKE_BUILD_TYPE=Release
echo "== cross build for aarch64: trovan and its core library compile for a processor that is not x86"
scripts/cross_check.sh
ASAN_OPTIONS=detect_leaks=1 run_suite build/sanitize -DCMAKE_BUILD_TYPE=Debug -DTROVAN_SANITIZE=ON

echo "== fuzz smoke run: every target, a fixed number of inputs, under both sanitizers"
scripts/fuzz_smoke.sh
echo "== the Debian package, unpacked as on a fresh machine, passing the command-line transcripts"
scripts/check_package.sh --transcripts
echo "== all tests passed"
