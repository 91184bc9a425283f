#!/bin/bash
# Runs the simulator's benchmarks: sim/bench/run.sh [SIMULATOR_BUILD_DIR [REQUESTS]]
# (the directory holding quillsim, e.g. build/release/sim in the whole tree). REQUESTS (default
# 2000) is the number of requests, each on its own opening of files.cmd, on each volume.
set -eu
B=$(cd "${1:-build/release/sim}" && pwd)
REQUESTS=${2:-2000}
export QUILLSIM_ROOT
QUILLSIM_ROOT=$(mktemp -d /tmp/sim_bench.XXXXXX)
trap 'rm -rf "$QUILLSIM_ROOT"' EXIT
"$B/quillsim" init
"$B/quillsim" volume add SMALL
"$B/quillsim" volume add BIG
"$B/quillsim" generate SMALL --files 100000
"$B/quillsim" generate BIG --files 1000000
status=0
QUILLSIM_FAST=1 "$B/quillsim" exec -- "$B/bench/sim_bench" loop 1000000 || status=$?
"$B/bench/sim_bench" load "$QUILLSIM_ROOT/sim/SMALL.state" "$QUILLSIM_ROOT/sim/BIG.state" || status=$?
# Normal mode: the cost of a request and of closing the command file after it must not grow
# with the volume (100,000 against 1,000,000 files).
echo "normal mode, one request per opening of files.cmd (the first opening not counted)"
for v in SMALL BIG; do
  "$B/quillsim" exec -- "$B/bench/sim_bench" close "$REQUESTS" "$QUILLSIM_ROOT/mnt/$v" || status=$?
done
exit $status
