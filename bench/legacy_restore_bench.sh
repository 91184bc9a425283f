#!/bin/bash
# A -w restore against a restore of the same entries from one saved document, both under the
# simulator's normal mode (every request parsed, applied to the volume and journalled), onto a
# generated volume: LINES report lines (one trustee each) onto a volume of FILES files.
# A -w restore converts the report into a document with one section per entry, so the file
# system's command file is opened and closed once per entry: this shows what that costs next to
# one section for all of them. Pairs are run side by side (the document, then the report), each
# from the same starting state; processor time (user + system) and wall time of each, the ratio
# of each pair and of the median pair.
# Usage: bench/legacy_restore_bench.sh [LINES] [FILES] [PAIRS]   (default 100000 100000 3)
#   QUILLSIM_BUILD=DIR runs another simulator build (a directory holding quillsim).
set -eu
LINES=${1:-100000}
FILES=${2:-100000}
PAIRS=${3:-3}
SRC=$(cd "$(dirname "$0")/.." && pwd)
B=$SRC/build/release
if [ "$(sed -n 's/^CMAKE_BUILD_TYPE:[A-Z]*=//p' "$B/CMakeCache.txt" 2>/dev/null)" != Release ]; then
  cmake -S "$SRC" -B "$B" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
fi
ninja -C "$B" trovan quillsim_all >/dev/null
Q=${QUILLSIM_BUILD:-$B/sim}/quillsim
W=$(mktemp -d /dev/shm/legacy_restore_bench.XXXXXX 2>/dev/null || mktemp -d /tmp/legacy_restore_bench.XXXXXX)
trap 'rm -rf "$W"' EXIT

export QUILLSIM_ROOT=$W/sandbox
"$Q" init
"$Q" volume add BIG
"$Q" generate BIG --files "$FILES"
"$Q" user add bob.sales.CORP
cp "$QUILLSIM_ROOT/sim/BIG.state" "$W/start.state"

# The report: one TRUSTEE line per file, the first LINES files. The document: the same trustees
# in one trustee section, as a save writes them.
awk -v n="$LINES" 'BEGIN {
  print "TRUSTEE.KXM report of BIG"
  for (i = 0; i < n; i++)
    printf "\"TRUSTEE\",\"BIG:\\d%04d\\f%07d\",\"x\",\"bob.sales\",\"RWF\"\n", int(i / 1000), i
}' >"$W/report.txt"
awk -v n="$LINES" 'BEGIN {
  print "<metadata>\n<trusteeInfo>"
  for (i = 0; i < n; i++)
    printf "<file><zid>0</zid><path><![CDATA[/d%04d/f%07d]]></path>\n<trustee><name>bob.sales.CORP</name><id></id><rights value=\"RWF\"><read/><write/><fileScan/></rights></trustee>\n</file>\n", int(i / 1000), i
  print "</trusteeInfo>\n</metadata>"
}' >"$W/doc.xml"
eval "$("$Q" env)"

# run NAME ARGS... < INPUT: restores from the starting state; prints "wall cpu".
run() {
  cp "$W/start.state" "$QUILLSIM_ROOT/sim/BIG.state"
  rm -f "$QUILLSIM_ROOT/sim/BIG.journal" "$QUILLSIM_ROOT/sim/requests.log" \
    "$QUILLSIM_ROOT/sim/replies.log" "$QUILLSIM_ROOT"/_admin/Manage_QUILL/Volume/BIG/*.xml
  local TIMEFORMAT='%R %U %S' t
  t=$({ time "$B/trovan" restore BIG "$@" >/dev/null 2>"$W/stderr"; } 2>&1)
  if [ "$("$Q" log | wc -l)" -ne "$LINES" ] || grep -v 'ATTR and OWNER' "$W/stderr" | grep -q .; then
    echo "restore $* did not send $LINES accepted requests" >&2
    cat "$W/stderr" >&2
    exit 1
  fi
  awk '{ printf "%.3f %.3f\n", $1, $2 + $3 }' <<<"$t"
}

echo "-w restore of $LINES lines onto a $FILES-file volume, against one document of the same entries"
ratios=
for pair in $(seq 1 "$PAIRS"); do
  read -r dw dc < <(run <"$W/doc.xml")
  read -r ww wc < <(run -w -t CORP <"$W/report.txt")
  rc=$(awk -v a="$wc" -v b="$dc" 'BEGIN { printf "%.2f", a / b }')
  rw=$(awk -v a="$ww" -v b="$dw" 'BEGIN { printf "%.2f", a / b }')
  printf 'pair %d: document %ss cpu %ss wall; -w %ss cpu %ss wall; ratio cpu %s, wall %s\n' \
    "$pair" "$dc" "$dw" "$wc" "$ww" "$rc" "$rw"
  ratios+="$rc $rw"$'\n'
done
sed '/^$/d' <<<"$ratios" | sort -n | sed -n "$(((PAIRS + 1) / 2))p" |
  awk '{ printf "median pair (by cpu): -w / document = %s cpu, %s wall (at most 3 wanted)\n", $1, $2 }'
