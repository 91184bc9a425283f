# The identity library resolves the sandbox's known SIDs and nothing else.
. "$(dirname "$0")/lib.sh"
setup
quillsim user add-ad S-1-5-21-1-2-3-1104 ann.ad
expect "lookups" "S-1-5-21-1-2-3-1104 valid ann.ad
S-1-5-21-1-2-3-1105 unknown
S-1-x malformed
bob.corp.TREE. malformed
 malformed" "$("$T/quillsim_lumo_check" S-1-5-21-1-2-3-1104 S-1-5-21-1-2-3-1105 S-1-x bob.corp.TREE. '')"
finish
