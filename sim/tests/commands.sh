# The quillsim command itself: env, exec, fast mode, logs, and its refusals.
. "$(dirname "$0")/lib.sh"
setup
quillsim volume add VOL1
quillsim file add VOL1 /a
expect "env" "export QUILLSIM_ROOT='$QUILLSIM_ROOT'" "$(quillsim env | head -1)"
expect "env sets five variables" "QUILLSIM_ROOT LD_PRELOAD LD_LIBRARY_PATH PATH ASAN_OPTIONS" \
  "$(quillsim env | sed 's/export \([A-Z_]*\)=.*/\1/' | tr '\n' ' ' | sed 's/ $//')"
# From a build tree (quillsim in <tree>/sim), the tree's trovan and trovanctl come first on PATH,
# after the simulator's own bin folder; elsewhere the PATH is left as it was.
tree=$QUILLSIM_ROOT/tree
mkdir -p "$tree/sim"
cp "$B/quillsim" "$tree/sim/quillsim"
expect "no trovan beside: PATH as it was" "export PATH='$tree/sim/bin:/usr/bin:/bin'" \
  "$(PATH=/usr/bin:/bin "$tree/sim/quillsim" env | grep '^export PATH=')"
printf '#!/bin/sh\n' >"$tree/trovan"
chmod +x "$tree/trovan"
expect "trovan of the tree first" "export PATH='$tree/sim/bin:$tree:/usr/bin:/bin'" \
  "$(PATH=/usr/bin:/bin "$tree/sim/quillsim" env | grep '^export PATH=')"
rm "$tree/trovan"
printf '#!/bin/sh\n' >"$tree/trovanctl"
chmod +x "$tree/trovanctl"
expect "trovanctl alone is enough" "export PATH='$tree/sim/bin:$tree:/usr/bin:/bin'" \
  "$(PATH=/usr/bin:/bin "$tree/sim/quillsim" env | grep '^export PATH=')"
expect "env is stable when evaluated twice" "$(quillsim env)" "$(eval "$(quillsim env)"; quillsim env)"
expect "exec runs inside the sandbox" "VOL1 $M/VOL1 quillvol rw,name=VOL1 0 0" \
  "$(env -u LD_PRELOAD "$B/quillsim" exec -- grep quillvol /etc/mtab)"
expect "--root" "VOL1 $M/VOL1" "$(env -u QUILLSIM_ROOT "$B/quillsim" --root "$QUILLSIM_ROOT" volume list)"
expect "no sandbox" "quillsim: no sandbox: set QUILLSIM_ROOT or give --root DIR
1" "$(env -u QUILLSIM_ROOT "$B/quillsim" volume list 2>&1; echo $?)"
expect "mount outside the sandbox" "quillsim: the mount point must lie inside the sandbox: /srv/x
1" "$(quillsim volume add X --mount /srv/x 2>&1; echo $?)"
expect "missing file" "quillsim: no such file on VOL1: /nope
1" "$(quillsim trustee add VOL1 /nope bob.corp.TREE. r 2>&1; echo $?)"
expect "bad rights" "quillsim: bad rights: rq
1" "$(quillsim irf set VOL1 /a rq 2>&1; echo $?)"
expect "unknown command" "quillsim: unknown command: frobnicate
1" "$(quillsim frobnicate 2>&1; echo $?)"

# Fast mode accepts everything, keeps and logs nothing, but still shows the volume's state.
quillsim trustee add VOL1 /a seeded.corp.TREE. r
quillsim fastmode on
expect "fast mode accepts" "$(ok addTrustee)" \
  "$(req files.cmd "$F<trustees><addTrustee><name>nobody</name><rights><read/></rights><fileName>/nowhere</fileName><symLink/></addTrustee></trustees>$FE")"
expect "fast mode without a known kind" "$(printf '<quillReply>\n<result value="0"><description>success</description></result>\n</quillReply>')" \
  "$(req manage.cmd "garbage")"
expect "fast mode keeps nothing" "T	/a	A	R		seeded.corp.TREE." "$(quillsim dump VOL1 | tail -n +2)"
expect "fast mode logs nothing" "" "$(quillsim log)"
expect "fast mode still shows the state" 1 "$(grep -c seeded.corp /_admin/Manage_QUILL/Volume/VOL1/TrusteeInfo.xml)"
quillsim fastmode off
expect "fast mode by environment" "$(ok addQuota)" \
  "$(printf '%s' "$F<directoryQuota><addQuota><fileName>/x</fileName><quotaAmount>1</quotaAmount></addQuota></directoryQuota>$FE" | QUILLSIM_FAST=1 "$T/quillsim_exchange" files.cmd)"

req files.cmd "$F<trustees><addTrustee><name>nobody</name><rights><read/></rights><fileName>$M/VOL1/a</fileName><symLink/></addTrustee></trustees>$FE" >/dev/null
expect "log --root-as" "$F<trustees><addTrustee><name>nobody</name><rights><read/></rights><fileName>\$ROOT/mnt/VOL1/a</fileName><symLink/></addTrustee></trustees>$FE" \
  "$(quillsim log --root-as '$ROOT')"
expect "replies log" "$(err addTrustee 3 'user not found' nobody)" "$(quillsim log --replies)"
quillsim log --clear
expect "log cleared" "" "$(quillsim log)"
finish
