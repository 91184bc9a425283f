# One server per sandbox: clients at once keep every change; a change is appended to the
# volume's journal (the state file is not rewritten per request or per close); the journal is
# folded into the state file once it outgrows it; a per-request latency delays every reply.
. "$(dirname "$0")/lib.sh"
setup
quillsim volume add VOL1
quillsim user add bob.corp.TREE.
add() { # add PATH: an addTrustee request for bob on PATH of VOL1
  printf '%s' "$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/></rights><fileName>$M/VOL1$1</fileName><symLink/></addTrustee></trustees>$FE"
}
for i in $(seq 1 60); do quillsim file add VOL1 "/a$i" "/b$i"; done

# Two clients at once, each sending its own requests one process after another: nothing is lost.
client() { for i in $(seq 1 60); do add "/$1$i" | "$T/quillsim_exchange" files.cmd >/dev/null; done; }
client a &
client b &
wait
expect "both clients' changes are kept" 120 "$(quillsim dump VOL1 | grep -c '^T')"
expect "every request was logged" 120 "$(quillsim log | wc -l)"

# A request appends one record to the journal; the state file stays as it was.
quillsim trustee add VOL1 /a1 seed.corp.TREE. r
before=$(stat -c %i.%Y.%s "$QUILLSIM_ROOT/sim/VOL1.state")
add /a2 | "$T/quillsim_exchange" files.cmd >/dev/null
expect "state file not rewritten by a request" "$before" "$(stat -c %i.%Y.%s "$QUILLSIM_ROOT/sim/VOL1.state")"
expect "one journal record" "T	/a2	A	R		bob.corp.TREE." "$(cat "$QUILLSIM_ROOT/sim/VOL1.journal")"
expect "the info file shows the journal's change" 1 \
  "$(grep -c 'CDATA\[/a2\]\]></path>' /_admin/Manage_QUILL/Volume/VOL1/TrusteeInfo.xml)"
quillsim irf set VOL1 /b1 rf
expect "a quillsim change folds the journal into the state file" "no journal" \
  "$(test -e "$QUILLSIM_ROOT/sim/VOL1.journal" || echo no journal)"
expect "and keeps its records" 1 "$(quillsim dump VOL1 | grep -c '^T	/a2	A	R		bob.corp.TREE.$')"

# Removal is a journal record too, replayed by the next process.
printf '%s' "$F<trustee><removeTrustee><fileName>VOL1:/a1</fileName><userID></userID></removeTrustee></trustee>$FE" >"$QUILLSIM_ROOT/remove.req"
quillsim trustee add VOL1 /a1 'Unknown(21350)' r
"$T/quillsim_exchange" files.cmd <"$QUILLSIM_ROOT/remove.req" >/dev/null
expect "removal record" "X	/a1	A	" "$(cat "$QUILLSIM_ROOT/sim/VOL1.journal")"
expect "removal replayed" 0 "$(quillsim dump VOL1 | grep -c 'Unknown')"

# A journal that outgrows both 1 MiB and the state file is folded into the state file.
add /b2 | "$T/quillsim_exchange" files.cmd --repeat 20000 >/dev/null
expect "a long journal is folded in" "small" \
  "$(test "$(stat -c %s "$QUILLSIM_ROOT/sim/VOL1.journal" 2>/dev/null || echo 0)" -lt 1048576 && echo small)"
expect "and nothing is lost" 1 "$(quillsim dump VOL1 | grep -c '^T	/b2	')"

# Latency: every reply waits for it (a lower bound only: a busy machine only adds to it).
expect "no latency by default" 0 "$(quillsim latency)"
quillsim latency 200ms
expect "latency shown" 200ms "$(quillsim latency)"
start=$(date +%s%N)
add /b3 | "$T/quillsim_exchange" files.cmd >/dev/null
expect "a reply waits for the latency" yes "$(test $(($(date +%s%N) - start)) -ge 200000000 && echo yes)"
start=$(date +%s%N)
add /b3 | QUILLSIM_FAST=1 "$T/quillsim_exchange" files.cmd >/dev/null
expect "fast mode waits too" yes "$(test $(($(date +%s%N) - start)) -ge 200000000 && echo yes)"
quillsim latency 50000ns
expect "latency in its shortest form" 50us "$(quillsim latency)"
expect "bad latency" "quillsim: bad latency: 5 (0, or a whole number of ns, us, ms or s up to a minute)
1" "$(quillsim latency 5 2>&1; echo $?)"
expect "too long a latency" "quillsim: bad latency: 61s (0, or a whole number of ns, us, ms or s up to a minute)
1" "$(quillsim latency 61s 2>&1; echo $?)"
expect "latency usage" "usage: quillsim latency [0|N{ns,us,ms,s}]
2" "$(quillsim latency 1s 2s 2>&1; echo $?)"
quillsim latency 0
expect "latency off" "0 no file" "$(quillsim latency) $(test -e "$QUILLSIM_ROOT/sim/latency" || echo no file)"
finish
