# The RXL console: volume checks, trustee file edits, "completed OK" on the error stream.
. "$(dirname "$0")/lib.sh"
setup
quillsim volume add VOL1
expect "known volume" "0" "$(rxlcon volume VOL1 2>&1; echo $?)"
expect "unknown volume" "rxlcon: volume NOPE not found
2" "$(rxlcon volume NOPE 2>&1; echo $?)"
expect "rights add reports on stderr" "rights add VOL1:/dir/a: completed OK" "$(rxlcon rights add VOL1:/dir/a admin.org rf 2>&1 >/dev/null)"
expect "nothing on stdout" "" "$(rxlcon irm set VOL1:/dir none 2>/dev/null)"
rxlcon rights add VOL1:/dir/a admin.org rwf 2>/dev/null
expect "bad rights" "rxlcon: invalid rights rvx
1" "$(rxlcon irm set VOL1:/dir rvx 2>&1; echo $?)"
guid=$(sed -n 's|<object_guid>\(.*\)</object_guid>|\1|p' "$M/VOL1/._KESTREL/.trustee_database.xml")
expect "guid is 36 characters" 36 "${#guid}"
expect "trustee file" "<?xml version=\"1.0\" encoding=\"UTF-8\"?>
<volume_trustees>
<trustee path=\"/dir/a\">
<name>admin.org</name>
<rights>RWF</rights>
<object_guid>$guid</object_guid>
</trustee>
<inherited_rights_mask path=\"/dir\">
<rights></rights>
</inherited_rights_mask>
</volume_trustees>" "$(quillsim rxl show VOL1)"
expect "argument log" "rxlcon volume VOL1
rxlcon volume NOPE
rxlcon rights add VOL1:/dir/a admin.org rf
rxlcon irm set VOL1:/dir none
rxlcon rights add VOL1:/dir/a admin.org rwf
rxlcon irm set VOL1:/dir rvx" "$(quillsim log --rxl)"
quillsim rxl trustee VOL1 /home/b bob.org RW 01234567-89ab-cdef-0123-456789abcdef
quillsim rxl irm VOL1 /home RF
expect "seeded entries" 2 "$(grep -c 'path="/home' "$M/VOL1/._KESTREL/.trustee_database.xml")"
# Seeds are written as the server's console writes them: upper-case letters, or none.
expect "lower-case seed refused" "quillsim: bad RXL rights: rwf (the server's console writes upper-case letters of ACEFMRSW, or none)
1" "$(quillsim rxl trustee VOL1 /home/c carl.org rwf 2>&1; echo $?)"
expect "lower-case filter refused" "quillsim: bad RXL rights: rF (the server's console writes upper-case letters of ACEFMRSW, or none)
1" "$(quillsim rxl irm VOL1 /home rF 2>&1; echo $?)"
expect "a letter that is no RXL right refused" "quillsim: bad RXL rights: RWX (the server's console writes upper-case letters of ACEFMRSW, or none)
1" "$(quillsim rxl trustee VOL1 /home/c carl.org RWX 2>&1; echo $?)"
expect "nothing seeded by a refusal" 0 "$(grep -c carl.org "$M/VOL1/._KESTREL/.trustee_database.xml")"
quillsim rxl irm VOL1 /home none
expect "none is an empty rights text" 2 "$(grep -c '^<rights></rights>$' "$M/VOL1/._KESTREL/.trustee_database.xml")"
finish
