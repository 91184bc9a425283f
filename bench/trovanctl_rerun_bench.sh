#!/bin/bash
# trovanctl apply re-run on a complete volume (nothing to send) against trovan restore of the
# same document, both at a simulated latency before every reply: a generated volume of N files
# (an Arbor trustee each, every tenth also an AD trustee and a filter, the files made) saved by
# trovan, so that the volume holds all of its document; at the latency, the wall time of trovan
# restore of the document into it and of trovanctl apply there (target: apply <= 10% of the
# restore), and the peak RSS of plan and apply on it (<= 512 MiB).
# Usage: [BUILD=build/release] [LATENCY=50us] bench/trovanctl_rerun_bench.sh [FILES]
#        (default 1000000)
set -eu
N=${1:-1000000}
LATENCY=${LATENCY:-50us}
source "$(dirname "$0")/simulated_sandbox.sh" rerun_bench
"$Q" volume add VOL && "$Q" generate VOL --files "$N" --touch && "$B/trovan" save VOL > "$W/doc.xml"
"$B/trovanctl" verify VOL "$W/doc.xml" | tail -1
"$Q" latency "$LATENCY"
times_of() {  # "wall processor peak-RSS" of one command, its output thrown away
  /usr/bin/time -f "%e %U %S %M" -o "$W/times" "$@" >/dev/null 2>&1 || true
  tail -1 "$W/times" | awk '{ printf "%.3f %.3f %d\n", $1, $2 + $3, $4 }'
}
read -r rw rc _ < <(times_of "$B/trovan" restore VOL < "$W/doc.xml")
# The simulator folds the restore's journal into the volume's state in the next program that
# opens it, in that program's memory: let a save do it, so that the figures below are apply's.
"$Q" latency 0
"$B/trovan" save VOL >/dev/null
"$Q" latency "$LATENCY"
read -r aw ac am < <(times_of "$B/trovanctl" apply VOL "$W/doc.xml" --quiet)
read -r _ _ pm < <(times_of "$B/trovanctl" plan VOL "$W/doc.xml")
"$Q" latency 0
"$B/trovanctl" apply VOL "$W/doc.xml" --quiet | tail -1
awk -v n="$N" -v l="$LATENCY" -v rw="$rw" -v rc="$rc" -v aw="$aw" -v ac="$ac" 'BEGIN {
  printf "at %s a request, %d files: trovan restore %.3f s (processor %.3f s), trovanctl apply re-run %.3f s (processor %.3f s): %.1f%% of the restore'"'"'s wall time (target <= 10%%)\n", l, n, rw, rc, aw, ac, (rw > 0 ? 100 * aw / rw : 0) }'
echo "peak RSS on the complete volume: plan $pm KiB, apply $am KiB (target <= 524288 KiB)"
