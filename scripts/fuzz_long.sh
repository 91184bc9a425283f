#!/usr/bin/env bash
# A longer fuzzing session: builds the fuzz targets as the smoke step does and runs each for
# the given time, keeping the inputs that reach new code in build/fuzz/corpus/NAME/ so that
# later sessions go on from there. Prints executions, time, coverage and findings per target.
#
# Usage: scripts/fuzz_long.sh [--runs N] DURATION [TARGET...]
#   --runs N   stop a target once it has made N executions, if that comes before DURATION
#   DURATION   time per target: seconds, or a number with s, m or h (30m, 2h)
#   TARGET     names of fuzz/NAME_fuzz.cpp targets (default: all of them)
# A finding is reproduced with: build/fuzz/fuzz/NAME_fuzz build/fuzz/findings/NAME/FILE
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/require.sh
. scripts/fuzz_common.sh

usage() { sed -n '2,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//' >&2; exit 2; }
runs=-1
if [ "${1:-}" = --runs ]; then
  [ $# -ge 2 ] && [[ $2 =~ ^[0-9]+$ ]] || usage
  runs=$2
  shift 2
fi
[ $# -ge 1 ] || usage
case $1 in
  *[0-9]s | *[0-9]) seconds=${1%s} ;;
  *[0-9]m) seconds=$((${1%m} * 60)) ;;
  *[0-9]h) seconds=$((${1%h} * 3600)) ;;
  *) usage ;;
esac
[[ $seconds =~ ^[0-9]+$ && $seconds -gt 0 ]] || usage
shift

if [ $# -gt 0 ]; then
  targets=("$@")
  for name in "${targets[@]}"; do
    [ -f "fuzz/${name}_fuzz.cpp" ] || { echo "no fuzz target fuzz/${name}_fuzz.cpp" >&2; exit 2; }
  done
else
  mapfile -t targets < <(fuzz_targets)
fi
if [ ${#targets[@]} -eq 0 ]; then
  echo "fuzz: no fuzz targets (fuzz/*_fuzz.cpp) yet; nothing to run"
  exit 0
fi
trovan_require_build_tools
fuzz_build "${targets[@]}"

summaries=()
found=0
for name in "${targets[@]}"; do
  log=$fuzz_build_dir/logs/$name.long.log
  mkdir -p "$(dirname "$log")"
  echo "== $name for ${seconds}s (log: $log)"
  start=$SECONDS
  marker=$fuzz_build_dir/logs/$name.start
  touch "$marker"
  # Past a finding the session goes on looking for more; each is kept under findings/.
  status=0
  fuzz_run "$name" "$fuzz_build_dir/corpus/$name" "$log" "-max_total_time=$seconds" \
    "-runs=$runs" -ignore_crashes=1 -ignore_timeouts=1 -ignore_ooms=1 -fork=1 || status=$?
  summaries+=("$(fuzz_summary "$name" "$log" $((SECONDS - start)) "$marker")")
  findings=$(find "$fuzz_build_dir/findings/$name" -type f -newer "$marker" | wc -l)
  if [ "$status" -ne 0 ] || [ "$findings" -gt 0 ]; then
    found=1
    echo "---- $name: status $status, $findings new finding(s) in $fuzz_build_dir/findings/$name/" >&2
  fi
done
echo "== summary"
printf '%s\n' "${summaries[@]}"
exit $found
