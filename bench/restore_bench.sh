#!/bin/bash
# Restore benchmarks, each a ratio measured side by side in this run:
#  1. the tag reader over a 1,000,000-trustee document against the window-copying reference;
#  2. trovan restore of that document against the simulator's fast mode, next to a loop that
#     sends the same requests through the same simulator and does nothing else;
#  3. trovan's peak resident memory, for that document and for one ten times smaller.
# Usage: bench/restore_bench.sh [TRUSTEES]   (default 1000000; run from the source tree)
set -eu
N=${1:-1000000}
SRC=$(cd "$(dirname "$0")/.." && pwd)
B=$SRC/build-bench
cmake -S "$SRC" -B "$B" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTROVAN_BENCH=ON -DTROVAN_TESTS=OFF \
  -DCMAKE_CXX_FLAGS=-Wno-error=restrict >/dev/null  # GCC 12 -O3 warns falsely in the simulator
ninja -C "$B" trovan tag_reader_bench request_loop_bench quillsim_all >/dev/null
W=$(mktemp -d /tmp/restore_bench.XXXXXX)
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
"$Q" fastmode on
MNT=$("$Q" volume list | awk '$1 == "VOL1" { print $2 }')
# The requests the restore sends, precomputed (the same bytes, one a line).
awk -v m="$MNT" '
  /<path>/ { p = $0; sub(/.*CDATA\[/, "", p); sub(/\]\]>.*/, "", p) }
  /<trustee>/ { n = $0; sub(/.*<name>/, "", n); sub(/<\/name>.*/, "", n)
    printf "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest><trustees><addTrustee><name>%s</name><rights><read/><write/><create/><erase/><modify/><fileScan/></rights><fileName>%s%s</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>\n", n, m, p }
' "$W/doc.xml" > "$W/requests.txt"

now() { date +%s.%N; }
t0=$(now); "$B/bench/request_loop_bench" "$W/requests.txt" >/dev/null; t1=$(now)
/usr/bin/time -f "%M" -o "$W/rss" "$B/trovan" restore VOL1 -m t < "$W/doc.xml"; t2=$(now)
/usr/bin/time -f "%M" -o "$W/rss_small" "$B/trovan" restore VOL1 -m t < "$W/small.xml"
awk -v a="$t0" -v b="$t1" -v c="$t2" -v n="$N" 'BEGIN {
  loop = b - a; restore = c - b
  printf "restore of %d trustees under the simulator (fast mode)\n", n
  printf "  request loop only   %8.3f s\n  trovan restore      %8.3f s\n", loop, restore
  printf "  ratio               %8.2fx (target <= 2x)\n", restore / loop }'
echo "peak RSS: $(cat "$W/rss") KiB for $N trustees, $(cat "$W/rss_small") KiB for $((N / 10)) (target < 16384 KiB)"
