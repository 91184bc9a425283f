#!/usr/bin/env bash
# Save benchmark: info files for FILES files (default 1,000,000; about 320 MB of TrusteeInfo.xml)
# read by cat and by the save, side by side in one run, with the save's peak memory; then the
# one-pass filters against the element-by-element ones at ORACLE_FILES files (default 100,000).
# When the simulator is built, the real trovan binary also saves a simulated volume.
# ORACLE_FILES=0 skips the element-by-element run. The simulator is taken from
# TROVAN_SIM_BUILD (default: the build folder of the tree), built with the project's default type.
#   bench/save_bench.sh [FILES] [ORACLE_FILES]
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
files=${1:-1000000}
oracle_files=${2:-100000}
build=${TROVAN_BENCH_BUILD:-$here/build-bench}
cmake -S "$here" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTROVAN_BENCH=ON \
      -DTROVAN_TESTS=OFF >/dev/null
ninja -C "$build" save_bench trovan >/dev/null
sim_build=${TROVAN_SIM_BUILD:-$here/build}
if [ ! -x "$sim_build/sim/quillsim" ]; then
  cmake -S "$here" -B "$sim_build" -G Ninja >/dev/null && ninja -C "$sim_build" quillsim_all >/dev/null 2>&1 || true
fi
bench=$build/bench/save_bench
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Best of three wall-clock seconds of a command (its output to /dev/null).
best() {
  local best_time=
  for _ in 1 2 3; do
    local start end
    start=$(date +%s.%N)
    "$@" >/dev/null
    end=$(date +%s.%N)
    best_time=$(echo "$end - $start" | bc -l | awk -v b="$best_time" '{ if (b == "" || $1 < b) print $1; else print b }')
  done
  echo "$best_time"
}
peak_kib() { /usr/bin/time -f %M "$@" 2>&1 >/dev/null | tail -1; }
ratio() { echo "$1 / $2" | bc -l | xargs printf '%.2f'; }

mkdir "$work/info"
"$bench" gen "$work/info" "$files"
info=("$work/info/TrusteeInfo.xml" "$work/info/UserInfo.xml" "$work/info/DirInfo.xml")
largest=$(stat -c %s "${info[0]}")
echo "info files for $files files: TrusteeInfo.xml $largest bytes"
cat "${info[@]}" >/dev/null
t_cat=$(best cat "${info[@]}")
t_plain=$(best "$bench" save "$work/info")
t_filtered=$(best "$bench" save "$work/info" /d0001 arbor)
echo "cat of the info files:              $t_cat s"
echo "save, unfiltered:                   $t_plain s  ($(ratio "$t_plain" "$t_cat")x cat, target <= 3x)"
echo "save, -p /d0001 -u arbor:           $t_filtered s  ($(ratio "$t_filtered" "$t_cat")x cat, target <= 5x)"
limit=$(( largest / 1024 + 65536 ))
echo "peak RSS unfiltered:                $(peak_kib "$bench" save "$work/info") KiB (limit $limit KiB)"
echo "peak RSS -p -u arbor:               $(peak_kib "$bench" save "$work/info" /d0001 arbor) KiB (limit $limit KiB)"

sim=$sim_build/sim/quillsim
if [ -x "$sim" ]; then
  export QUILLSIM_ROOT="$work/sim"
  mkdir "$QUILLSIM_ROOT"
  "$sim" init
  eval "$("$sim" env)"
  "$sim" volume add VOL1
  "$sim" generate VOL1 --files "$files"
  "$sim" dir add VOL1 /d0001
  vol=/_admin/Manage_QUILL/Volume/VOL1
  sim_info=("$vol/TrusteeInfo.xml" "$vol/UserInfo.xml" "$vol/DirInfo.xml")
  # The first look generates the info files from the state; every run timed below, cat and save
  # alike, goes through the simulator and reads the same current files.
  cat "${sim_info[@]}" >/dev/null
  "$build/trovan" save VOL1 >/dev/null
  t_cat=$(best cat "${sim_info[@]}")
  t_plain=$(best "$build/trovan" save VOL1)
  t_filtered=$(best "$build/trovan" save VOL1 -p /d0001 -u arbor)
  sim_largest=$(stat -c %s "$QUILLSIM_ROOT$vol/TrusteeInfo.xml")
  echo "simulated volume, $files files: TrusteeInfo.xml $sim_largest bytes"
  echo "  cat of the info files:            $t_cat s"
  echo "  trovan save, unfiltered:          $t_plain s  ($(ratio "$t_plain" "$t_cat")x cat, target <= 3x)"
  echo "  trovan save -p /d0001 -u arbor:   $t_filtered s  ($(ratio "$t_filtered" "$t_cat")x cat, target <= 5x)"
  sim_limit=$(( sim_largest / 1024 + 65536 ))
  echo "  peak RSS trovan save:             $(peak_kib "$build/trovan" save VOL1) KiB (limit $sim_limit KiB)"
  echo "  peak RSS trovan save -p -u arbor: $(peak_kib "$build/trovan" save VOL1 -p /d0001 -u arbor) KiB (limit $sim_limit KiB)"
  unset LD_PRELOAD
fi

if [ "$oracle_files" -gt 0 ]; then
  mkdir "$work/small"
  "$bench" gen "$work/small" "$oracle_files"
  "$bench" filters "$work/small/TrusteeInfo.xml" /d0001
fi
