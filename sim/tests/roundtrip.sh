# What a volume's info files show, replayed as requests on an empty twin, shows again the same.
. "$(dirname "$0")/lib.sh"
setup
quillsim volume add VOL1 --shadow VOL1S
quillsim volume add TWIN
for v in VOL1 TWIN; do quillsim file add $v '/a&b/x' '/b/c<d' /zz /d/e/ '/sp ace'; done
quillsim user add 'r&d.corp.TREE.'
quillsim user add bob.corp.TREE.
quillsim user add-ad S-1-5-21-1-2-3-1104 'ann<x>'
quillsim user add-ad S-1-5-21-1-2-3-1105 'raj'
quillsim trustee add VOL1 '/a&b/x' 'r&d.corp.TREE.' rwf
quillsim trustee add VOL1 /zz bob.corp.TREE. s
quillsim trustee add-ad VOL1 /zz S-1-5-21-1-2-3-1104 rf
quillsim trustee add VOL1 /zz 'r&d.corp.TREE.' rwcemfavx
quillsim trustee add-ad VOL1 '/sp ace' S-1-5-21-1-2-3-1105 none
quillsim trustee add VOL1 '/b/c<d' bob.corp.TREE. rwcemfa
quillsim irf set VOL1 /b rf
quillsim irf set VOL1 / none
quillsim quota user VOL1 bob.corp.TREE. 100
quillsim quota user VOL1 'ann<x>' 200 --ad
quillsim quota user VOL1 raj 0 --ad
quillsim quota dir VOL1 /d/e 300
quillsim quota dir VOL1 /b 400
expect "save, restore into a twin, save" identical "$("$T/quillsim_replay" VOL1 TWIN)"
expect "the shadow of the twin is untouched" "volume VOL1S mount $M/VOL1S" "$(quillsim dump VOL1S)"
finish
