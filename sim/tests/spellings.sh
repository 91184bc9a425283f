# Every libc spelling that reaches /_admin or /etc/mtab lands in the sandbox, and only there.
. "$(dirname "$0")/lib.sh"
setup
quillsim volume add VOL1
expect "under the simulator" ok "$("$T/quillsim_spellings" sim)"
expect "without the library" ok "$(env -u LD_PRELOAD "$T/quillsim_spellings" real)"
expect "library loaded, no sandbox" ok "$(env -u QUILLSIM_ROOT "$T/quillsim_spellings" real)"
finish
