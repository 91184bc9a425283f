# Faults on demand: refusals, damaged replies, failing reads and writes, a failing rxlcon.
. "$(dirname "$0")/lib.sh"
setup
quillsim volume add VOL1
quillsim file add VOL1 /a
quillsim user add bob.corp.TREE.
at="$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/></rights><fileName>$M/VOL1/a</fileName><symLink/></addTrustee></trustees>$FE"
irf="$F<trustees><modifyInheritedRightsFilter><inheritedRightsFilter><read/></inheritedRightsFilter><fileName>$M/VOL1/a</fileName></modifyInheritedRightsFilter></trustees>$FE"

quillsim fault refuse bob.corp 5 'access denied' bob
expect "refuse" "$(err addTrustee 5 'access denied' bob)" "$(req files.cmd "$at")"
expect "refusal applies nothing" "volume VOL1 mount $M/VOL1" "$(quillsim dump VOL1)"
expect "other requests pass" "$(ok modifyInheritedRightsFilter)" "$(req files.cmd "$irf")"
quillsim fault clear
expect "fault list empty" "" "$(quillsim fault list)"

quillsim fault no-marker
expect "no marker" "$(printf '<quillReply>\n<result value="0"><description>success</description></result>\n</quillReply>')" "$(req files.cmd "$at")"
quillsim fault clear
quillsim fault no-result addTrustee
expect "no result" "$(printf '<quillReply>\n<addTrustee><description>no result</description></addTrustee>\n</quillReply>')" "$(req files.cmd "$at")"
quillsim fault clear

for size in 65535 65536 70000; do
  quillsim fault oversize $size
  expect "oversize $size" $size "$(req files.cmd "$at" | wc -c)"
  expect "oversize $size keeps the result" 1 "$(req files.cmd "$at" | grep -c '<addTrustee><result value="0">')"
  quillsim fault clear
done

quillsim fault read-error EIO
expect "read error" "read failed: Input/output error" "$(req files.cmd "$at")"
quillsim fault clear
quillsim fault write-error ENOSPC modifyInheritedRightsFilter
expect "write error on matching requests" "write failed: No space left on device" "$(req files.cmd "$irf")"
expect "write error spares the others" "$(ok addTrustee)" "$(req files.cmd "$at")"
quillsim fault clear

quillsim fault rxlcon exit 3
rxlcon volume VOL1 2>/dev/null
expect "rxlcon exit" 3 $?
quillsim fault rxlcon silent
expect "rxlcon silent" "0:" "$(rxlcon irm set VOL1:/a rf 2>&1; echo "$?:")"
quillsim fault rxlcon signal 15
rxlcon volume VOL1 2>/dev/null
expect "rxlcon signal" 143 $?
quillsim fault clear
expect "usage error" 2 "$(quillsim fault bogus 2>/dev/null; echo $?)"
finish
