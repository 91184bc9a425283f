# shellcheck shell=bash
# Sourced by fuzz_smoke.sh and fuzz_long.sh: finds the fuzz targets, builds them with clang,
# libFuzzer, AddressSanitizer and UndefinedBehaviorSanitizer, and runs one of them.
#
# A target is fuzz/NAME_fuzz.cpp; its seed corpus is fuzz/corpus/NAME/ (or NAME_fuzz/) and an
# optional dictionary fuzz/NAME.dict. The build goes to build/fuzz (TROVAN_FUZZ_BUILD_DIR overrides).

fuzz_build_dir=${TROVAN_FUZZ_BUILD_DIR:-build/fuzz}

# Prints the names of the fuzz targets, one a line.
fuzz_targets() {
  local source
  for source in fuzz/*_fuzz.cpp; do
    [ -e "$source" ] || continue
    source=${source##*/}
    echo "${source%_fuzz.cpp}"
  done
}

# Stops with a clear message unless clang can build and link a libFuzzer target with both
# sanitizers on this machine (the fuzzer runtime comes with libclang-rt-dev).
fuzz_check_toolchain() {
  trovan_require clang:clang clang++:clang
  local probe
  probe=$(mktemp -d "${TMPDIR:-/tmp}/trovan-fuzz-probe.XXXXXX")
  printf '%s\n' '#include <cstddef>' '#include <cstdint>' \
    'extern "C" int LLVMFuzzerTestOneInput(const uint8_t *, size_t) { return 0; }' \
    >"$probe/probe.cpp"
  if ! clang++ -fsanitize=fuzzer,address,undefined "$probe/probe.cpp" -o "$probe/probe" \
    2>"$probe/log"; then
    cat "$probe/log" >&2
    rm -rf "$probe"
    echo "clang++ cannot link -fsanitize=fuzzer,address,undefined here;" \
      "install the clang runtime (libclang-rt-dev)" >&2
    exit 1
  fi
  rm -rf "$probe"
}

# Builds every fuzz target. The whole program is compiled with the coverage instrumentation
# that libFuzzer steers by (fuzzer-no-link), not only the targets' own files.
fuzz_build() {
  fuzz_check_toolchain
  local names=() name
  for name in "$@"; do names+=("${name}_fuzz"); done
  echo "== building ${names[*]} in $fuzz_build_dir"
  CC=clang CXX=clang++ cmake -S . -B "$fuzz_build_dir" -G Ninja \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTROVAN_FUZZ=ON -DTROVAN_SANITIZE=ON -DTROVAN_TESTS=OFF \
    -DCMAKE_C_FLAGS=-fsanitize=fuzzer-no-link -DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link \
    >/dev/null
  ninja -C "$fuzz_build_dir" "${names[@]}" >/dev/null
}

# fuzz_run NAME WORK_CORPUS LOG OPTION... : runs one target over its work corpus (where new
# inputs go) and its seed corpus (read only), writing findings under the build folder.
# Returns the fuzzer's status; the log holds its output.
fuzz_run() {
  local name=$1 work=$2 log=$3
  shift 3
  local seeds=fuzz/corpus/$name artifacts=$fuzz_build_dir/findings/$name
  # The seed corpus may also be named after the target's program.
  [ -d "$seeds" ] || [ ! -d "fuzz/corpus/${name}_fuzz" ] || seeds=fuzz/corpus/${name}_fuzz
  local options=(-timeout=10 -rss_limit_mb=2048 -close_fd_mask=3 -print_final_stats=1
    "-artifact_prefix=$artifacts/")
  [ -f "fuzz/$name.dict" ] && options+=("-dict=fuzz/$name.dict")
  mkdir -p "$work" "$artifacts"
  local corpora=("$work")
  if [ -d "$seeds" ]; then
    corpora+=("$seeds")
  else
    echo "note: $name has no seed corpus in $seeds" >&2
  fi
  # Sanitizer reports stop the run at the first finding and show where it happened.
  ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=0} \
    UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1} \
    "$fuzz_build_dir/fuzz/${name}_fuzz" "${options[@]}" "$@" "${corpora[@]}" >"$log" 2>&1
}

# fuzz_summary NAME LOG SECONDS [MARKER] : one line of figures from a fuzzer's log; findings
# are the inputs saved under findings/NAME/ (those newer than MARKER when it is given).
fuzz_summary() {
  local name=$1 log=$2 seconds=$3 marker=${4:-}
  local executions coverage features corpus findings newer=()
  executions=$(sed -nE 's/^stat::number_of_executed_units: *([0-9]+)/\1/p' "$log" | tail -1 || true)
  # Fork mode prints no final statistics; its progress lines start with the execution count.
  [ -n "$executions" ] || executions=$(sed -nE 's/^#([0-9]+):? .*/\1/p' "$log" | tail -1 || true)
  coverage=$(grep -oE 'cov: [0-9]+' "$log" | tail -1 | cut -d' ' -f2 || true)
  features=$(grep -oE 'ft: [0-9]+' "$log" | tail -1 | cut -d' ' -f2 || true)
  corpus=$(grep -oE 'corp: [0-9]+(/[0-9]+[a-zA-Z]*)?' "$log" | tail -1 | cut -d' ' -f2 || true)
  [ -n "$marker" ] && newer=(-newer "$marker")
  findings=$(find "$fuzz_build_dir/findings/$name" -type f "${newer[@]}" 2>/dev/null | wc -l || true)
  printf '%-20s %10s execs %6ss  cov %6s  ft %6s  corpus %-12s findings %s\n' "$name" \
    "${executions:-?}" "$seconds" "${coverage:-?}" "${features:-?}" "${corpus:-?}" "$findings"
}
