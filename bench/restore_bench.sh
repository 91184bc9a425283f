#!/bin/bash
# Restore benchmarks, each a ratio measured side by side in this run:
#  1. the tag reader over a 1,000,000-trustee document against the window-copying reference;
#  2. the Release `trovan restore VOL1 < doc.xml` against the simulator's fast mode, next to a
#     loop that sends the same request bytes through the same simulator, with the same
#     lseek/write/lseek/read-until-0 pattern, reads the replies and does nothing else
#     (five pairs, each the loop and then the restore; the median pair's ratio, and the ratio
#     of either side's best time);
#  3. trovan's peak resident memory, for that document and for one ten times smaller.
# The document is shaped like a save of a real volume (about 190 bytes and 16 tags a trustee).
# The loop's requests are computed from the document by bench/restore_requests.awk; they are
# first checked to be byte for byte what trovan sends, against the simulator's request log of a
# restore of the smaller document.
# Usage: bench/restore_bench.sh [TRUSTEES]   (default 1000000; run from the source tree)
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

now() { date +%s.%N; }
# Each run is a pair, the loop and then the restore, so that both halves of a pair meet the
# machine at the same speed (this machine's speed drifts by a third from minute to minute). The
# ratio is given for each pair, as the median pair's, and as the best times' of either side.
loop_best=; restore_best=; ratios=
for run in 1 2 3 4 5; do
  loop=$("$B/bench/request_loop_bench" "$W/requests.txt" 2>/dev/null)
  t0=$(now)
  "$B/trovan" restore VOL1 < "$W/doc.xml"
  t1=$(now)
  restore=$(awk -v a="$t0" -v b="$t1" 'BEGIN { printf "%.6f", b - a }')
  ratio=$(awk -v l="$loop" -v r="$restore" 'BEGIN { printf "%.3f", r / l }')
  echo "  run $run: request loop $loop s, trovan restore $restore s, ratio ${ratio}x"
  ratios="$ratios $ratio"
  loop_best=$(awk -v a="$loop" -v b="${loop_best:-$loop}" 'BEGIN { print (a < b ? a : b) }')
  restore_best=$(awk -v a="$restore" -v b="${restore_best:-$restore}" 'BEGIN { print (a < b ? a : b) }')
done
/usr/bin/time -f "%M" -o "$W/rss" "$B/trovan" restore VOL1 < "$W/doc.xml"
/usr/bin/time -f "%M" -o "$W/rss_small" "$B/trovan" restore VOL1 < "$W/small.xml"
median=$(echo "$ratios" | tr ' ' '\n' | grep . | sort -n | sed -n 3p)
awk -v loop="$loop_best" -v restore="$restore_best" -v n="$N" -v median="$median" \
    -v r="$(wc -l < "$W/requests.txt")" 'BEGIN {
  printf "restore of %d trustees (%d requests) under the simulator (fast mode), 5 pairs\n", n, r
  printf "  request loop only   %8.3f s  %6.0f ns/request (best)\n", loop, loop * 1e9 / r
  printf "  trovan restore      %8.3f s  %6.0f ns/request (best)\n", restore, restore * 1e9 / r
  printf "  ratio of the bests  %8.2fx\n", restore / loop
  printf "  median pair ratio   %8.2fx (target <= 2x)\n", median }'
echo "peak RSS: $(cat "$W/rss") KiB for $N trustees, $(cat "$W/rss_small") KiB for $((N / 10)) (target < 16384 KiB)"
