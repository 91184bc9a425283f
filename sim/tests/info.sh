# Info files are generated from the state, in the file system's form, and follow every change.
. "$(dirname "$0")/lib.sh"
setup
quillsim volume add VOL1
quillsim file add VOL1 /a/x /b /d/sub/
quillsim user add bob.corp.TREE.
quillsim user add 'r&d.corp.TREE.'
quillsim user add-ad S-1-5-21-1-2-3-1104 'ann&co'
quillsim trustee add VOL1 /b bob.corp.TREE. rwf
quillsim trustee add VOL1 /a/x 'r&d.corp.TREE.' r
quillsim trustee add-ad VOL1 /a/x S-1-5-21-1-2-3-1104 rf
quillsim irf set VOL1 /a/x rwcemfa
quillsim quota user VOL1 bob.corp.TREE. 1000
quillsim quota user VOL1 'ann&co' 9223372036854775807 --ad --used 12
quillsim quota dir VOL1 /d/sub 500
I=/_admin/Manage_QUILL/Volume/VOL1
zax=$(cat "$I/TrusteeInfo.xml" | sed -n 's|<file><zid>\([0-9]*\)</zid><path><!\[CDATA\[/a/x\]\]>.*|\1|p')
zb=$(cat "$I/TrusteeInfo.xml" | sed -n 's|<file><zid>\([0-9]*\)</zid><path><!\[CDATA\[/b\]\]>.*|\1|p')
expect "TrusteeInfo.xml" "<quillReply>
<result value=\"0\"><description>success</description></result>
<trusteeInfo>
<file><zid>$zax</zid><path><![CDATA[/a/x]]></path>
<trustee><name>r&amp;d.corp.TREE.</name><id></id><rights value=\"R\"><read/></rights></trustee>
<trustee type=\"adID\"><name>ann&amp;co</name><id>S-1-5-21-1-2-3-1104</id><rights value=\"RF\"><read/><fileScan/></rights></trustee>
<inheritedRightsFilter value=\"RWCEAFM\"><read/><write/><create/><erase/><accessControl/><fileScan/><modify/></inheritedRightsFilter>
</file>
<file><zid>$zb</zid><path><![CDATA[/b]]></path>
<trustee><name>bob.corp.TREE.</name><id></id><rights value=\"RWF\"><read/><write/><fileScan/></rights></trustee>
</file>
</trusteeInfo>
</quillReply>" "$(cat "$I/TrusteeInfo.xml")"
expect "UserInfo.xml" '<quillReply>
<result value="0"><description>success</description></result>
<userInfo>
<user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
<user type="adID"><id>S-1-5-21-1-2-3-1104</id><spaceUsed>12</spaceUsed><quotaAmount>9223372036854775807</quotaAmount><name>ann&amp;co</name></user>
</userInfo>
</quillReply>' "$(cat "$I/UserInfo.xml")"
zd=$(cat "$I/DirInfo.xml" | sed -n 's|<directory><zid>\([0-9]*\)</zid>.*|\1|p')
expect "DirInfo.xml" "<quillReply>
<result value=\"0\"><description>success</description></result>
<dirInfo>
<directory><zid>$zd</zid><path>\\d\\sub</path><spaceUsed>0</spaceUsed><quotaAmount>500</quotaAmount></directory>
</dirInfo>
</quillReply>" "$(cat "$I/DirInfo.xml")"

# Regenerated after a change through a command file ...
req files.cmd "$F<trustee><removeTrustee><fileName>VOL1:/b</fileName><userID></userID></removeTrustee></trustee>$FE" >/dev/null
expect "after a refused removal" 1 "$(grep -c 'bob.corp' "$I/TrusteeInfo.xml")"
req files.cmd "$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/></rights><fileName>$M/VOL1/b</fileName><symLink/></addTrustee></trustees>$FE" >/dev/null
expect "after a request" '<trustee><name>bob.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>' "$(grep 'bob.corp' "$I/TrusteeInfo.xml")"
# ... and after a change with quillsim.
quillsim quota user VOL1 bob.corp.TREE. 2000
expect "after quillsim" 1 "$(grep -c '<quotaAmount>2000</quotaAmount>' "$I/UserInfo.xml")"

# The info directory exists for known volumes only; an empty volume has empty sections.
quillsim volume add VOL2
expect "known volume" yes "$(/usr/bin/test -d /_admin/Manage_QUILL/Volume/VOL2 && echo yes)"
expect "unknown volume" no "$(/usr/bin/test -d /_admin/Manage_QUILL/Volume/VOL3 || echo no)"
expect "empty volume" '<quillReply>
<result value="0"><description>success</description></result>
<dirInfo>
</dirInfo>
</quillReply>' "$(cat /_admin/Manage_QUILL/Volume/VOL2/DirInfo.xml)"
# An info file that is current is served without loading the volume's state; after a change
# the next look regenerates it from the state.
quillsim file add VOL1 /e
cat "$I/UserInfo.xml" >/dev/null
cat "$I/TrusteeInfo.xml" >/dev/null
rm -f "$QUILLSIM_ROOT/debug.log"
QUILLSIM_DEBUG=$QUILLSIM_ROOT/debug.log cat "$I/TrusteeInfo.xml" "$I/UserInfo.xml" >/dev/null
expect "current info files load no state" "" "$(grep '^load ' "$QUILLSIM_ROOT/debug.log")"
quillsim trustee add VOL1 /e bob.corp.TREE. r
QUILLSIM_DEBUG=$QUILLSIM_ROOT/debug.log cat "$I/TrusteeInfo.xml" >/dev/null
expect "a changed volume is loaded again" "load VOL1" "$(grep '^load ' "$QUILLSIM_ROOT/debug.log")"
expect "and its info file follows the change" 1 "$(grep -c 'CDATA\[/e\]\]></path>' "$I/TrusteeInfo.xml")"
finish
