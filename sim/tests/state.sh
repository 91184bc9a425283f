# State lives in readable files of the sandbox and survives from one process to the next.
. "$(dirname "$0")/lib.sh"
setup
quillsim volume add VOL1
quillsim file add VOL1 /a /b
quillsim user add bob.corp.TREE.
req files.cmd "$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/><write/></rights><fileName>$M/VOL1/a</fileName><symLink/></addTrustee></trustees>$FE" >/dev/null
expect "a later process sees the change" "T	/a	A	RW		bob.corp.TREE." "$(quillsim dump VOL1 | grep '^T')"
req files.cmd "$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/></rights><fileName>$M/VOL1/a</fileName><symLink/></addTrustee></trustees>$FE" >/dev/null
expect "a second add replaces the rights" "T	/a	A	R		bob.corp.TREE." "$(quillsim dump VOL1 | grep '^T')"
quillsim trustee add VOL1 /b bob.corp.TREE. rwf
req files.cmd "$F<trustees><modifyInheritedRightsFilter><inheritedRightsFilter><read/></inheritedRightsFilter><fileName>$M/VOL1/b</fileName></modifyInheritedRightsFilter></trustees>$FE" >/dev/null
expect "quillsim and the library share the state" "volume VOL1 mount $M/VOL1
T	/a	A	R		bob.corp.TREE.
T	/b	A	RWF		bob.corp.TREE.
I	/b	R" "$(quillsim dump VOL1)"
expect "users file" "A	bob.corp.TREE." "$(grep -v '^#' "$QUILLSIM_ROOT/sim/users")"
expect "volumes file" "VOL1	$M/VOL1	" "$(grep -v '^#' "$QUILLSIM_ROOT/sim/volumes")"

# Loading is lazy: a program that never touches the command files leaves the state alone.
before=$(stat -c %Y.%s "$QUILLSIM_ROOT/sim/VOL1.state")
cat /etc/mtab >/dev/null
expect "untouched by other programs" "$before" "$(stat -c %Y.%s "$QUILLSIM_ROOT/sim/VOL1.state")"

# A generated volume: its files exist in the state, so requests on them are accepted.
quillsim volume add BIG
quillsim generate BIG --files 2500
expect "generated records" 2750 "$(grep -c '^T' "$QUILLSIM_ROOT/sim/BIG.state")"
expect "request on a generated file" "$(ok modifyInheritedRightsFilter)" \
  "$(req files.cmd "$F<trustees><modifyInheritedRightsFilter><inheritedRightsFilter><read/></inheritedRightsFilter><fileName>$M/BIG/d0002/f0002499</fileName></modifyInheritedRightsFilter></trustees>$FE")"
expect "generated filters" 251 "$(quillsim dump BIG | grep -c '^I')"
finish
