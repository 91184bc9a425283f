#!/usr/bin/env bash
# Save benchmark: info files for FILES files (default 1,000,000; about 320 MB of TrusteeInfo.xml)
# read by cat and by the save, side by side in one run. Each command runs as its own process,
# timed by `save_bench time`; processor time is user + system of that whole process. ROUNDS rounds
# (default 5) each run cat, the save and the save with -p -u in turn; the medians are compared.
# Peak memory is reported beside each. Then the one-pass filters against the element-by-element
# ones (quadratic) at ORACLE_FILES files (default 20,000; 0 skips them). When the simulator is
# built and SIM is not 0, the real trovan binary also saves a simulated volume.
#   bench/save_bench.sh [FILES] [ORACLE_FILES]
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
files=${1:-1000000}
oracle_files=${2:-20000}
rounds=${ROUNDS:-5}
build=${TROVAN_BENCH_BUILD:-$here/build-bench}
cmake -S "$here" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTROVAN_BENCH=ON \
      -DTROVAN_TESTS=OFF >/dev/null
ninja -C "$build" save_bench trovan >/dev/null
if [ "${SIM:-1}" != 0 ]; then ninja -C "$build" quillsim_all >/dev/null 2>&1 || true; fi
bench=$build/bench/save_bench
# Files in memory (/dev/shm when there is one), so the disk does not blur the ratios.
work=$(mktemp -d /dev/shm/save_bench.XXXXXX 2>/dev/null || mktemp -d)
trap 'rm -rf "$work"' EXIT

# Runs a command (output to /dev/null) and appends "wall user system peak-KiB" to the file $1.
measure() {
  local out=$1
  shift
  "$bench" time "$@" >>"$out"
}
# The median of column $2 of file $1 (processor time: column "cpu" = user + system).
median() {
  awk -v c="$2" '{ print (c == "cpu" ? $2 + $3 : $c) }' "$1" | sort -g |
    awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'
}
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", (b > 0 ? a / b : 0) }'; }
# Prints one line of the report for the runs in file $1 against the baseline runs in file $2.
report() {
  local name=$1 runs=$2 base=$3 target=$4
  local cpu wall
  cpu=$(median "$runs" cpu)
  wall=$(median "$runs" 1)
  printf '  %-30s cpu %7.3f s (%sx)  wall %7.3f s (%sx)  peak %s KiB%s\n' "$name" "$cpu" \
    "$(ratio "$cpu" "$(median "$base" cpu)")" "$wall" "$(ratio "$wall" "$(median "$base" 1)")" \
    "$(median "$runs" 4)" "${target:+  (cpu target <= ${target}x)}"
}
# ROUNDS rounds of cat, unfiltered save and filtered save, interleaved; then the report.
compare() {
  local tag=$1 cat_args=$2 plain_args=$3 filtered_args=$4
  rm -f "$work/$tag".*
  for _ in $(seq "$rounds"); do
    measure "$work/$tag.cat" cat $cat_args
    measure "$work/$tag.plain" $plain_args
    measure "$work/$tag.filtered" $filtered_args
  done
  report "cat of the info files" "$work/$tag.cat" "$work/$tag.cat" ""
  report "save, unfiltered" "$work/$tag.plain" "$work/$tag.cat" 3
  report "save, -p /d0001 -u arbor" "$work/$tag.filtered" "$work/$tag.cat" 6
}

mkdir "$work/info"
"$bench" gen "$work/info" "$files"
info="$work/info/TrusteeInfo.xml $work/info/UserInfo.xml $work/info/DirInfo.xml"
echo "info files for $files files: TrusteeInfo.xml $(stat -c %s "$work/info/TrusteeInfo.xml") bytes"
echo "in-process save (save_bench), medians of $rounds interleaved rounds (x: ratio to cat):"
compare direct "$info" "$bench save $work/info" "$bench save $work/info /d0001 arbor"

sim=$build/sim/quillsim
if [ "${SIM:-1}" != 0 ] && [ -x "$sim" ]; then
  export QUILLSIM_ROOT="$work/sim"
  mkdir "$QUILLSIM_ROOT"
  "$sim" init
  eval "$("$sim" env)"
  "$sim" volume add VOL1
  "$sim" generate VOL1 --files "$files"
  "$sim" dir add VOL1 /d0001
  vol=/_admin/Manage_QUILL/Volume/VOL1
  # The first look generates the info files from the state; every run timed below, cat and save
  # alike, goes through the simulator and reads the same current files.
  cat $vol/TrusteeInfo.xml $vol/UserInfo.xml $vol/DirInfo.xml >/dev/null
  echo "trovan save of a simulated volume of $files files, medians of $rounds rounds:"
  compare sim "$vol/TrusteeInfo.xml $vol/UserInfo.xml $vol/DirInfo.xml" \
    "$build/trovan save VOL1" "$build/trovan save VOL1 -p /d0001 -u arbor"
  unset LD_PRELOAD
fi

if [ "$oracle_files" -gt 0 ]; then
  mkdir "$work/small"
  "$bench" gen "$work/small" "$oracle_files"
  "$bench" filters "$work/small/TrusteeInfo.xml" /d0001
fi
