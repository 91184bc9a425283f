# The simulator prints nothing of its own on a program's streams.
. "$(dirname "$0")/lib.sh"
setup
quillsim volume add VOL1
quillsim file add VOL1 /a
quillsim user add bob.corp.TREE.
expect "a plain program" "hi|" "$(bash -c 'echo hi' 2>&1)|"
expect "reading the simulated files" "" "$(cat /etc/mtab /_admin/Manage_QUILL/Volume/VOL1/TrusteeInfo.xml 2>&1 >/dev/null)"
out=$(req files.cmd "$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/></rights><fileName>$M/VOL1/a</fileName><symLink/></addTrustee></trustees>$FE" 2>"$QUILLSIM_ROOT/err")
expect "an exchange prints only the reply" "$(ok addTrustee)" "$out"
expect "and nothing on stderr" "" "$(cat "$QUILLSIM_ROOT/err")"
expect "quillsim commands are silent" "" "$(quillsim trustee add VOL1 /a bob.corp.TREE. r 2>&1; quillsim irf set VOL1 /a rf 2>&1)"
expect "the command files are never written" "0 0" "$(stat -c %s "$QUILLSIM_ROOT/_admin/Manage_QUILL/files.cmd" "$QUILLSIM_ROOT/_admin/Manage_QUILL/manage.cmd" | tr '\n' ' ' | sed 's/ $//')"
QUILLSIM_DEBUG=$QUILLSIM_ROOT/debug.log cat /etc/mtab >/dev/null
expect "debug output goes to its own file" "redirect /etc/mtab" "$(cat "$QUILLSIM_ROOT/debug.log")"
finish
