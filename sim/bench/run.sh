#!/bin/bash
# Runs the simulator's benchmarks: sim/bench/run.sh [SIMULATOR_BUILD_DIR]
# (the directory holding quillsim, e.g. build/sim in the whole tree).
set -eu
B=$(cd "${1:-build/sim}" && pwd)
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
exit $status
