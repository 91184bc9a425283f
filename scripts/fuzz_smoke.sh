#!/usr/bin/env bash
# The fuzz smoke step of CI: builds every fuzz target (fuzz/*_fuzz.cpp) with clang, libFuzzer,
# AddressSanitizer and UndefinedBehaviorSanitizer, and runs each for a fixed number of inputs
# over its seed corpus. Fails on the first crash, leak, sanitizer report or timeout.
#
# Usage: scripts/fuzz_smoke.sh [RUNS]     (RUNS per target, default 20000)
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/require.sh
. scripts/fuzz_common.sh

runs=${1:-20000}
[[ $runs =~ ^[0-9]+$ ]] || { echo "usage: scripts/fuzz_smoke.sh [RUNS]" >&2; exit 2; }

mapfile -t targets < <(fuzz_targets)
if [ ${#targets[@]} -eq 0 ]; then
  echo "fuzz smoke: no fuzz targets (fuzz/*_fuzz.cpp) yet; nothing to run"
  exit 0
fi
trovan_require_build_tools
fuzz_build "${targets[@]}"

work=$(mktemp -d "${TMPDIR:-/tmp}/trovan-fuzz-smoke.XXXXXX")
trap 'rm -rf "$work"' EXIT
failed=()
for name in "${targets[@]}"; do
  rm -rf "$fuzz_build_dir/findings/$name"
  log=$fuzz_build_dir/logs/$name.smoke.log
  mkdir -p "$(dirname "$log")"
  start=$SECONDS
  # Targets whose every input is a long document run fewer inputs, and check, which runs
  # trovan's restore in a child process for every input, fewer still.
  target_runs=$runs
  [ "$name" = tag_reader ] && target_runs=$((runs / 10))
  [ "$name" = check ] && target_runs=$((runs / 20))
  # A fixed seed: the same inputs every time, so that a failure can be rerun.
  if fuzz_run "$name" "$work/$name" "$log" "-runs=$target_runs" -seed=1; then
    fuzz_summary "$name" "$log" $((SECONDS - start))
  else
    fuzz_summary "$name" "$log" $((SECONDS - start))
    echo "---- $name failed; the end of $log:" >&2
    tail -n 40 "$log" >&2
    failed+=("$name")
  fi
done
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz smoke: FAILED: ${failed[*]} (inputs in $fuzz_build_dir/findings/)" >&2
  exit 1
fi
echo "fuzz smoke: ${#targets[@]} target(s), $runs runs each (a tenth of that for tag_reader, a twentieth for check), no findings"
