# One exchange per request kind, with the exact reply bytes and the exact request log.
. "$(dirname "$0")/lib.sh"
setup
quillsim volume add VOL1
quillsim file add VOL1 /a/x /b/
quillsim dir add VOL1 /q
quillsim user add bob.corp.TREE.
quillsim user add 'r&d.corp.TREE.'
quillsim user add-ad S-1-5-21-1-2-3-1104 ann.ad

at="$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/><fileScan/></rights><fileName>$M/VOL1/a/x</fileName><gemelPath/><symLink/></addTrustee></trustees>$FE"
expect "addTrustee" "$(ok addTrustee)" "$(req files.cmd "$at")"
expect "addTrustee entity name" "$(ok addTrustee)" \
  "$(req files.cmd "$F<trustees><addTrustee><name>r&amp;d.corp.TREE.</name><rights><read/></rights><fileName>$M/VOL1/a/x</fileName><symLink/></addTrustee></trustees>$FE")"
expect "addTrustee unknown user" "$(err addTrustee 3 'user not found' eve.corp.TREE.)" \
  "$(req files.cmd "$F<trustees><addTrustee><name>eve.corp.TREE.</name><rights><read/></rights><fileName>$M/VOL1/a/x</fileName><symLink/></addTrustee></trustees>$FE")"
expect "addTrustee missing file" "$(err addTrustee 2 'file not found' "$M/VOL1/nope")" \
  "$(req files.cmd "$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/></rights><fileName>$M/VOL1/nope</fileName><symLink/></addTrustee></trustees>$FE")"
expect "addTrustee no volume" "$(err addTrustee 19 'volume not found' /srv/x)" \
  "$(req files.cmd "$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/></rights><fileName>/srv/x</fileName><symLink/></addTrustee></trustees>$FE")"
expect "addTrustee bad right" "$(err addTrustee 22 'invalid rights' '<READ/>')" \
  "$(req files.cmd "$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><READ/></rights><fileName>$M/VOL1/a</fileName><symLink/></addTrustee></trustees>$FE")"
expect "addTrustee AD" "$(ok addTrustee)" \
  "$(req files.cmd "$F<trustees><addTrustee type=\"adID\"><userID>S-1-5-21-1-2-3-1104</userID><rights><read/></rights><fileName>$M/VOL1/a</fileName><gemelPath/><symLink/></addTrustee></trustees>$FE")"
expect "addTrustee AD unknown SID" "$(err addTrustee 3 'user not found' S-1-5-21-9)" \
  "$(req files.cmd "$F<trustees><addTrustee type=\"adID\"><userID>S-1-5-21-9</userID><rights></rights><fileName>$M/VOL1/a</fileName><symLink/></addTrustee></trustees>$FE")"
expect "IRF" "$(ok modifyInheritedRightsFilter)" \
  "$(req files.cmd "$F<trustees><modifyInheritedRightsFilter><inheritedRightsFilter><read/></inheritedRightsFilter><fileName>$M/VOL1/b</fileName><gemelPath/></modifyInheritedRightsFilter></trustees>$FE")"
expect "empty IRF" "$(ok modifyInheritedRightsFilter)" \
  "$(req files.cmd "$F<trustees><modifyInheritedRightsFilter><inheritedRightsFilter></inheritedRightsFilter><fileName>$M/VOL1/a/x</fileName></modifyInheritedRightsFilter></trustees>$FE")"
expect "user quota" "$(ok userSpaceRestrictions)" \
  "$(req manage.cmd "$V<userSpaceRestrictions><set><volumeName>VOL1</volumeName><userName>bob.corp.TREE.</userName><quota>1000</quota><gemelPath/></set></userSpaceRestrictions>$VE")"
expect "AD user quota" "$(ok userSpaceRestrictions)" \
  "$(req manage.cmd "$V<userSpaceRestrictions><set type=\"adID\"><volumeName>VOL1</volumeName><userName>ann.ad</userName><quota>2000</quota></set></userSpaceRestrictions>$VE")"
expect "user quota unknown volume" "$(err userSpaceRestrictions 19 'volume not found' VOL9)" \
  "$(req manage.cmd "$V<userSpaceRestrictions><set><volumeName>VOL9</volumeName><userName>bob.corp.TREE.</userName><quota>1</quota></set></userSpaceRestrictions>$VE")"
expect "user quota bad amount" "$(err userSpaceRestrictions 22 'invalid quota amount' ' 5')" \
  "$(req manage.cmd "$V<userSpaceRestrictions><set><volumeName>VOL1</volumeName><userName>bob.corp.TREE.</userName><quota> 5</quota></set></userSpaceRestrictions>$VE")"
expect "dir quota" "$(ok addQuota)" \
  "$(req files.cmd "$F<directoryQuota><addQuota><fileName>$M/VOL1/q</fileName><gemelPath/><quotaAmount>77</quotaAmount></addQuota></directoryQuota>$FE")"
expect "dir quota on a file" "$(err addQuota 20 'not a directory' "$M/VOL1/a/x")" \
  "$(req files.cmd "$F<directoryQuota><addQuota><fileName>$M/VOL1/a/x</fileName><quotaAmount>77</quotaAmount></addQuota></directoryQuota>$FE")"
expect "removeTrustee AD" "$(ok removeTrustee)" \
  "$(req files.cmd "$F<trustee><removeTrustee type=\"adID\"><fileName>VOL1:/a</fileName><userID>S-1-5-21-1-2-3-1104</userID></removeTrustee></trustee>$FE")"
expect "removeTrustee again" "$(err removeTrustee 61 'trustee not found' S-1-5-21-1-2-3-1104)" \
  "$(req files.cmd "$F<trustee><removeTrustee type=\"adID\"><fileName>VOL1:/a</fileName><userID>S-1-5-21-1-2-3-1104</userID></removeTrustee></trustee>$FE")"
quillsim trustee add VOL1 /b 'Unknown(21350)' rw
quillsim trustee add VOL1 /b 'Unknown(21350)' r --id 7
expect "removeTrustee plain" "$(ok removeTrustee)" \
  "$(req files.cmd "$F<trustee><removeTrustee><fileName>VOL1:/b</fileName><userID></userID></removeTrustee></trustee>$FE")"
expect "removeTrustee plain by identifier" "$(ok removeTrustee)" \
  "$(req files.cmd "$F<trustee><removeTrustee><fileName>VOL1:/b</fileName><userID>7</userID></removeTrustee></trustee>$FE")"
expect "removeTrustee unknown volume" "$(err removeTrustee 19 'volume not found' VOL9)" \
  "$(req files.cmd "$F<trustee><removeTrustee><fileName>VOL9:/b</fileName><userID></userID></removeTrustee></trustee>$FE")"
expect "malformed" "$(err addTrustee 22 'malformed request' addTrustee)" \
  "$(req files.cmd "$F<trustees><addTrustee><name>bob.corp.TREE.</name></addTrustee></trustees>$FE")"
expect "unknown request" "$(printf '<quillReply>\n<result value="22"><description>malformed request</description><name>request</name></result>\n</quillReply>')" \
  "$(req files.cmd "$F<nothing/>$FE")"
expect "wrong command file" "$(err userSpaceRestrictions 22 'request not supported by this command file' userSpaceRestrictions)" \
  "$(req files.cmd "$V<userSpaceRestrictions><set><volumeName>VOL1</volumeName><userName>bob.corp.TREE.</userName><quota>1</quota></set></userSpaceRestrictions>$VE")"
expect "pread/pwrite and small reads" "$(ok addTrustee)" "$(printf '%s' "$at" | "$T/quillsim_exchange" files.cmd --pread --chunk 7)"

expect "state" "volume VOL1 mount $M/VOL1
T	/a/x	A	RF		bob.corp.TREE.
T	/a/x	A	R		r&d.corp.TREE.
I	/a/x	-
I	/b	R
U	A	1000	0		bob.corp.TREE.
U	D	2000	0	S-1-5-21-1-2-3-1104	ann.ad
Q	/q	77	0" "$(quillsim dump VOL1)"

expect "request log, one request a line" "$at" "$(quillsim log | head -1)"
expect "request log length" 25 "$(quillsim log | wc -l)"
req files.cmd "$(printf 'a\\b\nc')" >/dev/null
expect "a request holding a line feed is logged escaped" 'a\\b\nc' "$(quillsim log | tail -1)"
req files.cmd 'a\b' >/dev/null
expect "a request without a line feed is logged as it stands" 'a\b' "$(quillsim log | tail -1)"
finish
