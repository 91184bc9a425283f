# Nothing outside the sandbox is read as simulated or touched: the real mount table has no
# quillvol entry, the sandbox's has, and requests can only reach the sandbox's volumes.
. "$(dirname "$0")/lib.sh"
real_admin_before=$(ls -d /_admin 2>&1)
real_mtab_before=$(ls -l /etc/mtab 2>&1)
setup
quillsim volume add VOL1
quillsim file add VOL1 /a
quillsim user add bob.corp.TREE.
expect "real mount table" 0 "$(env -u LD_PRELOAD grep -c ' quillvol ' /etc/mtab)"
expect "simulated mount table" "VOL1 $M/VOL1 quillvol rw,name=VOL1 0 0" "$(grep ' quillvol ' /etc/mtab)"
expect "marker only under the simulator" "yes no" \
  "$(/usr/bin/test -e /_admin/.quillsim && echo yes) $(env -u LD_PRELOAD /usr/bin/test -e /_admin/.quillsim || echo no)"
expect "a path outside every volume is refused" "$(err addTrustee 19 'volume not found' /etc/passwd)" \
  "$(req files.cmd "$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/></rights><fileName>/etc/passwd</fileName><symLink/></addTrustee></trustees>$FE")"
expect "a look-alike of the mount point is refused" "$(err addTrustee 19 'volume not found' "$M/VOL1x/a")" \
  "$(req files.cmd "$F<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/></rights><fileName>$M/VOL1x/a</fileName><symLink/></addTrustee></trustees>$FE")"
expect "real /_admin untouched" "$real_admin_before" "$(env -u LD_PRELOAD ls -d /_admin 2>&1)"
expect "real mount table untouched" "$real_mtab_before" "$(env -u LD_PRELOAD ls -l /etc/mtab 2>&1)"
finish
