#!/usr/bin/env bash
# trovanctl benchmark: check of one COUNT-trustee document (default 1,000,000, about 200 MB) and
# diff of two such documents differing in 1% of their entries (the second in another order), each
# against `xmllint --stream --noout` over the same files, as processor time (user + system) and
# peak RSS, in one run of ROUNDS rounds (default 5). diff's peak RSS is set beside GNU diff's on
# the same two files.
#   [ROUNDS=N] bench/trovanctl_bench.sh [COUNT]
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

# Rounds, each measuring xmllint and trovanctl one after the other, so that each round's ratio
# compares runs made under the same load; the median round's ratio is the result.
rounds=${ROUNDS:-5}
: >"$work/rounds"
for ((round = 1; round <= rounds; round++)); do
  read -r lint_one _ < <(measure xmllint --stream --noout "$work/old.xml")
  read -r check_cpu check_rss < <(measure "$trovanctl" check "$work/old.xml")
  read -r lint_two _ < <(measure xmllint --stream --noout "$work/old.xml" "$work/new.xml")
  read -r diff_cpu diff_rss < <(measure "$trovanctl" diff "$work/old.xml" "$work/new.xml")
  read -r moved_cpu moved_rss < <(measure "$trovanctl" diff "$work/old.xml" "$work/moved.xml")
  echo "$lint_one $check_cpu $check_rss $lint_two $diff_cpu $diff_rss $moved_cpu $moved_rss" >>"$work/rounds"
done
read -r gnu_cpu gnu_rss < <(measure diff "$work/old.xml" "$work/new.xml")

echo "documents: $count trustees, $size bytes each; $rounds rounds, processor time (user + system)"
awk -v gnu_cpu="$gnu_cpu" -v gnu_rss="$gnu_rss" '
function median(values, count,   i, j, t) {
  for (i = 2; i <= count; i++)
    for (j = i; j > 1 && values[j - 1] > values[j]; j--) { t = values[j]; values[j] = values[j - 1]; values[j - 1] = t }
  return count % 2 ? values[(count + 1) / 2] : (values[count / 2] + values[count / 2 + 1]) / 2
}
{
  check[NR] = $2 / $1; diff[NR] = $5 / $4; moved[NR] = $7 / $4
  printf "  round %d: xmllint %.2fs, check %.2fs (%.2fx); xmllint over both %.2fs, diff %.2fs (%.2fx), reordered %.2fs (%.2fx)\n", NR, $1, $2, check[NR], $4, $5, diff[NR], $7, moved[NR]
  if ($3 > check_rss) check_rss = $3
  if ($6 > diff_rss) diff_rss = $6
  if ($8 > moved_rss) moved_rss = $8
}
END {
  printf "check: median round ratio %.2f (target <= 1); peak RSS %d MiB (target <= 64)\n", median(check, NR), check_rss / 1024
  printf "diff: median round ratio %.2f (target <= 1)\n", median(diff, NR)
  printf "diff, the new document in another order: median round ratio %.2f; peak RSS %d MiB\n", median(moved, NR), moved_rss / 1024
  printf "diff peak RSS %d MiB vs GNU diff %d MiB (%.2fs): ratio %.2f (target <= 1)\n", diff_rss / 1024, gnu_rss / 1024, gnu_cpu, diff_rss / gnu_rss
}' "$work/rounds"
