#!/bin/bash
# trovanctl apply against trovan restore, in one run: a generated volume of N files (an Arbor
# trustee each, every tenth also an AD trustee and a filter) saved by trovan, then applied to an
# empty volume under the simulator's fast mode (every request accepted at once, so the figures are
# the programs' own cost): three rounds of each, processor time (user + system) side by side and
# the median round's ratio (target <= 1.2x), with the strict reading's own processor time (and
# apply's without it, whose median ratio is reported beside the whole); then the peak RSS of plan
# and apply (<= 512 MiB).
# Usage: [BUILD=build/release] bench/trovanctl_apply_bench.sh [FILES]   (default 1000000)
set -eu
N=${1:-1000000}
source "$(dirname "$0")/simulated_sandbox.sh" apply_bench
"$Q" volume add GEN && "$Q" generate GEN --files "$N" && "$B/trovan" save GEN > "$W/doc.xml"
"$Q" volume add VOL1
"$Q" fastmode on
times_of() {  # "wall processor" of one command, its output thrown away
  /usr/bin/time -f "%e %U %S" -o "$W/times" "$@" < "$W/doc.xml" >/dev/null 2>&1 || true
  awk '{ printf "%.3f %.3f\n", $1, $2 + $3 }' "$W/times"
}
: > "$W/rounds"
for run in 1 2 3; do
  read -r rw rc < <(times_of "$B/trovan" restore VOL1)
  read -r aw ac < <(times_of "$B/trovanctl" apply VOL1 - --quiet)
  # The strict reading alone (trovanctl map keeping nothing; -o renames its result over the file
  # it names, so never a device): apply's share less this is its own.
  read -r mw mc < <(times_of "$B/trovanctl" map "$W/doc.xml" --path /none/ -o "$W/none.xml")
  echo "$rw $rc $aw $ac $mc" >> "$W/rounds"
done
/usr/bin/time -f "%M" -o "$W/rss_plan" "$B/trovanctl" plan VOL1 "$W/doc.xml" >/dev/null 2>&1 || true
/usr/bin/time -f "%M" -o "$W/rss_apply" "$B/trovanctl" apply VOL1 "$W/doc.xml" --quiet \
  >/dev/null 2>&1 || true
awk -v n="$N" -v requests="$(grep -c '<trustee>\|<trustee type\|<inheritedRightsFilter' "$W/doc.xml")" '
{ printf "  round %d: trovan restore %.3f s (processor %.3f s), trovanctl apply %.3f s (processor %.3f s), %.2fx; strict reading alone: processor %.3f s, apply less it %.3f s (%.2fx)\n", NR, $1, $2, $3, $4, ($2 > 0 ? $4 / $2 : 0), $5, $4 - $5, ($2 > 0 ? ($4 - $5) / $2 : 0)
  r[NR] = $2 > 0 ? $4 / $2 : 0; o[NR] = $2 > 0 ? ($4 - $5) / $2 : 0 }
function median(a,   i, j, t) {
  for (i = 2; i <= NR; i++) for (j = i; j > 1 && a[j - 1] > a[j]; j--) { t = a[j]; a[j] = a[j - 1]; a[j - 1] = t }
  return a[int((NR + 1) / 2)] }
END { printf "apply of %d files (%d requests) to an empty volume: median processor ratio %.2fx (target <= 1.2x); apply less the strict reading %.2fx\n", n, requests, median(r), median(o) }' "$W/rounds"
echo "peak RSS: plan $(tail -1 "$W/rss_plan") KiB, apply $(tail -1 "$W/rss_apply") KiB (target <= 524288 KiB)"
