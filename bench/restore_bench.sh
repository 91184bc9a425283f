#!/bin/bash
# Restore benchmarks, each a ratio measured side by side in this run, in processor time (user +
# system of the whole process, the simulator's share included) beside wall time:
#  1. the tag reader over a 1,000,000-trustee document against the window-copying reference;
#  2. the Release `trovan restore VOL1 < doc.xml` against the simulator's fast mode, next to a
#     loop that sends the same request bytes through the same simulator, with the same
#     lseek/write/lseek/read-until-0 pattern, reads the replies and does nothing else
#     (five rounds, each the loop and then the restore; the median round's ratio, and the ratio
#     of either side's best time);
#  3. trovan's peak resident memory, for that document and for one ten times smaller.
# With BEFORE=/path/to/another/trovan, that binary (an earlier build, say) restores the same
# document in each round too, after this tree's, and is reported beside it.
# The document is shaped like a save of a real volume (about 190 bytes and 16 tags a trustee).
# The loop's requests are computed from the document by bench/restore_requests.awk; they are
# first checked to be byte for byte what trovan sends, against the simulator's request log of a
# restore of the smaller document.
# Usage: [BEFORE=trovan] bench/restore_bench.sh [TRUSTEES]   (default 1000000; from the source tree)
set -eu
N=${1:-1000000}
SRC=$(cd "$(dirname "$0")/.." && pwd)
B=$SRC/build-bench
cmake -S "$SRC" -B "$B" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTROVAN_BENCH=ON -DTROVAN_TESTS=OFF \
  -DCMAKE_CXX_FLAGS=-Wno-error=restrict >/dev/null  # GCC 12 -O3 warns falsely in the simulator
ninja -C "$B" trovan tag_reader_bench request_loop_bench quillsim_all >/dev/null
# Files in memory (/dev/shm when there is one), so disk write-back does not blur the ratios.
W=$(mktemp -d /dev/shm/restore_bench.XXXXXX 2>/dev/null || mktemp -d /tmp/restore_bench.XXXXXX)
trap 'rm -rf "$W"' EXIT

"$B/bench/tag_reader_bench" --generate "$N" > "$W/doc.xml"
"$B/bench/tag_reader_bench" --generate $((N / 10)) > "$W/small.xml"
echo "document: $N trustees, $(($(stat -c %s "$W/doc.xml") / 1000000)) MB"
"$B/bench/tag_reader_bench" "$W/doc.xml"

export QUILLSIM_ROOT=$W/sandbox
mkdir "$QUILLSIM_ROOT"
Q=$B/sim/quillsim
"$Q" init
"$Q" volume add VOL1
eval "$("$Q" env)"
MNT=$("$Q" volume list | awk '$1 == "VOL1" { print $2 }')
awk -v m="$MNT" -f "$SRC/bench/restore_requests.awk" "$W/doc.xml" > "$W/requests.txt"

# The precomputed requests are what trovan sends: compare with the simulator's log of a restore
# of the smaller document (the volume is empty, so every request is refused; the bytes count).
"$Q" fastmode off
"$B/trovan" restore VOL1 < "$W/small.xml" >/dev/null 2>&1 || true
awk -v m="$MNT" -f "$SRC/bench/restore_requests.awk" "$W/small.xml" > "$W/small_requests.txt"
if ! "$Q" log | cmp -s - "$W/small_requests.txt"; then
  echo "the precomputed requests differ from what trovan sends" >&2
  exit 1
fi
"$Q" log --clear >/dev/null
"$Q" fastmode on

# One restore of the document by the trovan given: prints "wall processor" in seconds.
restore_times() {
  /usr/bin/time -f "%e %U %S" -o "$W/times" "$1" restore VOL1 < "$W/doc.xml"
  awk '{ printf "%.3f %.3f\n", $1, $2 + $3 }' "$W/times"
}
# Each round runs the loop and then the restore (and the BEFORE binary), so that all of them meet
# the machine at the same speed (this machine's speed drifts from minute to minute).
: > "$W/rounds"
for run in 1 2 3 4 5; do
  read -r loop_wall loop_cpu < <("$B/bench/request_loop_bench" "$W/requests.txt" 2>/dev/null)
  read -r wall cpu < <(restore_times "$B/trovan")
  before_wall=0 before_cpu=0
  if [ -n "${BEFORE:-}" ]; then read -r before_wall before_cpu < <(restore_times "$BEFORE"); fi
  echo "$loop_wall $loop_cpu $wall $cpu $before_wall $before_cpu" >> "$W/rounds"
done
/usr/bin/time -f "%M" -o "$W/rss" "$B/trovan" restore VOL1 < "$W/doc.xml"
/usr/bin/time -f "%M" -o "$W/rss_small" "$B/trovan" restore VOL1 < "$W/small.xml"
if [ -n "${BEFORE:-}" ]; then
  /usr/bin/time -f "%M" -o "$W/rss_before" "$BEFORE" restore VOL1 < "$W/doc.xml"
fi
awk -v n="$N" -v r="$(wc -l < "$W/requests.txt")" -v before="${BEFORE:-}" '
function median(values, count,   i, j, t) {
  for (i = 2; i <= count; i++)
    for (j = i; j > 1 && values[j - 1] > values[j]; j--) { t = values[j]; values[j] = values[j - 1]; values[j - 1] = t }
  return values[int((count + 1) / 2)]
}
function best(column,   i, m) { m = v[1, column]; for (i = 2; i <= NR; i++) if (v[i, column] < m) m = v[i, column]; return m }
{ for (c = 1; c <= 6; c++) v[NR, c] = $c
  printf "  round %d: loop %.3f s (processor %.3f s), restore %.3f s (processor %.3f s), processor ratio %.2fx", NR, $1, $2, $3, $4, $4 / $2
  if (before != "") printf "; before %.3f s (processor %.3f s), %.2fx", $5, $6, $6 / $2
  printf "\n"
  cpu[NR] = $4 / $2; wall[NR] = $3 / $1; bcpu[NR] = $6 / $2 }
END {
  printf "restore of %d trustees (%d requests) under the simulator (fast mode), %d rounds\n", n, r, NR
  printf "  request loop only   %8.3f s wall  %8.3f s processor  %6.0f ns/request (best)\n", best(1), best(2), best(2) * 1e9 / r
  printf "  trovan restore      %8.3f s wall  %8.3f s processor  %6.0f ns/request (best)\n", best(3), best(4), best(4) * 1e9 / r
  if (before != "")
    printf "  before (%s) %8.3f s wall  %8.3f s processor\n", before, best(5), best(6)
  printf "  median round ratio  %8.2fx wall  %8.2fx processor (target <= 2x processor)\n", median(wall, NR), median(cpu, NR)
  if (before != "") printf "  before, median      %19.2fx processor\n", median(bcpu, NR)
}' "$W/rounds"
echo "peak RSS: $(cat "$W/rss") KiB for $N trustees, $(cat "$W/rss_small") KiB for $((N / 10)) (target < 16384 KiB)"
if [ -n "${BEFORE:-}" ]; then echo "peak RSS before: $(cat "$W/rss_before") KiB for $N trustees"; fi
