# A request carrying <gemelPath/> changes the shadow volume too; one without it only its own.
. "$(dirname "$0")/lib.sh"
setup
quillsim volume add VOL1 --shadow VOL1S
quillsim file add VOL1 /a /d/
quillsim user add bob.corp.TREE.
quillsim user add-ad S-1-5-21-7 ann.ad
expect "shadow listed" "VOL1 $M/VOL1 shadow=VOL1S
VOL1S $M/VOL1S" "$(quillsim volume list)"
send() { # $1 = gemel element or nothing
  req files.cmd "$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/></rights><fileName>$M/VOL1/a</fileName>$1<symLink/></addTrustee></trustees>$FE"
  req files.cmd "$F<trustees><addTrustee type=\"adID\"><userID>S-1-5-21-7</userID><rights><read/></rights><fileName>$M/VOL1/a</fileName>$1<symLink/></addTrustee></trustees>$FE"
  req files.cmd "$F<trustees><modifyInheritedRightsFilter><inheritedRightsFilter><read/></inheritedRightsFilter><fileName>$M/VOL1/a</fileName>$1</modifyInheritedRightsFilter></trustees>$FE"
  req manage.cmd "$V<userSpaceRestrictions><set><volumeName>VOL1</volumeName><userName>bob.corp.TREE.</userName><quota>10</quota>$1</set></userSpaceRestrictions>$VE"
  req manage.cmd "$V<userSpaceRestrictions><set type=\"adID\"><volumeName>VOL1</volumeName><userName>ann.ad</userName><quota>20</quota>$1</set></userSpaceRestrictions>$VE"
  req files.cmd "$F<directoryQuota><addQuota><fileName>$M/VOL1/d</fileName>$1<quotaAmount>30</quotaAmount></addQuota></directoryQuota>$FE"
}
send "" >/dev/null
expect "without gemelPath the shadow stays empty" "volume VOL1S mount $M/VOL1S" "$(quillsim dump VOL1S)"
expect "the volume itself changed" 6 "$(quillsim dump VOL1 | grep -c '^[TIUQ]')"
send "<gemelPath/>" >/dev/null
expect "with gemelPath both change" "$(quillsim dump VOL1 | tail -n +2)" "$(quillsim dump VOL1S | tail -n +2)"
expect "shadow info file" "$(cat /_admin/Manage_QUILL/Volume/VOL1/TrusteeInfo.xml)" "$(cat /_admin/Manage_QUILL/Volume/VOL1S/TrusteeInfo.xml)"
finish
