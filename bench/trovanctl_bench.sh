#!/usr/bin/env bash
# trovanctl benchmark: check of one COUNT-trustee document (default 1,000,000, about 200 MB) and
# diff of two such documents differing in 1% of their entries (the second in another order), each
# against `xmllint --stream --noout` over the same files, as processor time (user + system) and
# peak RSS, in one run. diff's peak RSS is set beside GNU diff's on the same two files.
#   bench/trovanctl_bench.sh [COUNT]
# TROVANCTL names the binary (default: build/release/trovanctl, built when missing).
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
count=${1:-1000000}
if ! command -v xmllint >/dev/null; then
  apt-get install -y libxml2-utils >/dev/null
fi
trovanctl=${TROVANCTL:-$here/build/release/trovanctl}
if [ ! -x "$trovanctl" ]; then
  cmake -S "$here" -B "$here/build/release" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
  ninja -C "$here/build/release" trovanctl >/dev/null
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Two documents in trovan save's form, as two saves of one volume: the files in the same order
# (the file system's, not the path order), 1% of the trustees with other rights. A third holds
# the second's entries in another order, for trovanctl diff alone (GNU diff would take hours).
awk -v count="$count" -v work="$work" 'BEGIN {
  old = work "/old.xml"; new = work "/new.xml"; moved = work "/moved.xml"
  printf "<metadata>\n<trusteeInfo>\n" > old
  printf "<metadata>\n<trusteeInfo>\n" > new
  printf "<metadata>\n<trusteeInfo>\n" > moved
  for (i = 0; i < count; i++) {
    j = (i * 7919) % count
    line1 = sprintf("<file><zid>%d</zid><path><![CDATA[/data/dept%03d/project%04d/file%07d.txt]]></path>\n", i, i % 997, i % 7919, i)
    printf "%s<trustee><name>user%05d.staff.corp.TREE.</name><id></id><rights value=\"RWF\"><read/><write/><fileScan/></rights></trustee>\n</file>\n", line1, i % 50000 > old
    if (i % 100 == 0) r[0] = "value=\"RWCF\"><read/><write/><create/><fileScan/>"; else r[0] = "value=\"RWF\"><read/><write/><fileScan/>"
    printf "%s<trustee><name>user%05d.staff.corp.TREE.</name><id></id><rights %s</rights></trustee>\n</file>\n", line1, i % 50000, r[0] > new
    line2 = sprintf("<file><zid>%d</zid><path><![CDATA[/data/dept%03d/project%04d/file%07d.txt]]></path>\n", j, j % 997, j % 7919, j)
    if (j % 100 == 0)
      rights = "value=\"RWCF\"><read/><write/><create/><fileScan/>"
    else
      rights = "value=\"RWF\"><read/><write/><fileScan/>"
    printf "%s<trustee><name>user%05d.staff.corp.TREE.</name><id></id><rights %s</rights></trustee>\n</file>\n", line2, j % 50000, rights > moved
  }
  printf "</trusteeInfo>\n</metadata>\n" > old
  printf "</trusteeInfo>\n</metadata>\n" > new
  printf "</trusteeInfo>\n</metadata>\n" > moved
}'
size=$(stat -c %s "$work/old.xml")

# "USER+SYSTEM_SECONDS PEAK_KIB" of a command.
measure() {
  /usr/bin/time -f "%U %S %M" -o "$work/time" "$@" >/dev/null 2>&1 || true
  tail -n 1 "$work/time" | awk '{ printf "%.2f %d\n", $1 + $2, $3 }'
}
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", (b > 0 ? a / b : 0) }'; }

read -r lint_one lint_one_rss < <(measure xmllint --stream --noout "$work/old.xml")
read -r check_cpu check_rss < <(measure "$trovanctl" check "$work/old.xml")
read -r lint_two _ < <(measure xmllint --stream --noout "$work/old.xml" "$work/new.xml")
read -r diff_cpu diff_rss < <(measure "$trovanctl" diff "$work/old.xml" "$work/new.xml")
read -r moved_cpu moved_rss < <(measure "$trovanctl" diff "$work/old.xml" "$work/moved.xml")
read -r gnu_cpu gnu_rss < <(measure diff "$work/old.xml" "$work/new.xml")

echo "documents: $count trustees, $size bytes each"
echo "check: ${check_cpu}s vs xmllint --stream ${lint_one}s: ratio $(ratio "$check_cpu" "$lint_one") (target <= 1); peak RSS $((check_rss / 1024)) MiB (target <= 64)"
echo "diff: ${diff_cpu}s vs xmllint --stream over both ${lint_two}s: ratio $(ratio "$diff_cpu" "$lint_two") (target <= 1)"
echo "diff, the new document in another order: ${moved_cpu}s, ratio $(ratio "$moved_cpu" "$lint_two"); peak RSS $((moved_rss / 1024)) MiB"
echo "diff peak RSS $((diff_rss / 1024)) MiB vs GNU diff $((gnu_rss / 1024)) MiB (${gnu_cpu}s): ratio $(ratio "$diff_rss" "$gnu_rss") (target <= 1)"
