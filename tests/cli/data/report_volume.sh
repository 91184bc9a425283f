#!/bin/bash
# Seeds the volume of trovanctl report's transcripts and worked cases and saves it to saved.xml:
# nested directories, a supervisor at the root, filters that block and do not block, Arbor and
# AD trustees (odd characters in a name and in a path) and both kinds of quota.
# Usage: report_volume.sh VOLUME [--no-admin]  (--no-admin: the user admin.corp.TREE. exists)
set -e
vol=$1
ann='Ann "Q" & Co – ü'
odd='/data/x, "y" & <z>'
quillsim volume add "$vol"
quillsim dir add "$vol" /data/open/any /data/finance/reports /data/finance/2026/q1 /home/ann
quillsim file add "$vol" "$odd"
[ "$2" = --no-admin ] || quillsim user add admin.corp.TREE.
quillsim user add staff.corp.TREE. && quillsim user add bob.corp.TREE.
quillsim user add-ad S-1-5-21-1-2-3-1104 "$ann"
quillsim trustee add "$vol" / admin.corp.TREE. s
quillsim trustee add "$vol" /data staff.corp.TREE. rwcef
quillsim irf set "$vol" /data/open rwceafms
quillsim irf set "$vol" /data/finance rf
quillsim trustee add-ad "$vol" /data/finance S-1-5-21-1-2-3-1104 rw
quillsim trustee add "$vol" /data/finance/reports staff.corp.TREE. r
quillsim irf set "$vol" /data/finance/2026 none
quillsim trustee add "$vol" /data/finance/2026/q1 bob.corp.TREE. rwf
quillsim trustee add "$vol" "$odd" bob.corp.TREE. r
quillsim quota user "$vol" bob.corp.TREE. 1000
quillsim quota user "$vol" "$ann" 2000 --ad
quillsim quota dir "$vol" /home/ann 500
quillsim quota dir "$vol" /data/finance 77
trovan save "$vol" >saved.xml
