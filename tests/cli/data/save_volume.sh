#!/bin/bash
# Seeds the volume of the save transcripts (masks and filters): files under /test1, /test2 and
# /test10 (a plain prefix of /test1 by name), Arbor and AD trustees, a filter on /test2, Arbor and
# AD user quotas and two directory quotas.
# Usage: save_volume.sh VOLUME
set -e
vol=$1
quillsim volume add "$vol"
quillsim file add "$vol" /test1/a /test2/b /test10/c
quillsim user add bob.corp.TREE.
quillsim user add-ad S-1-5-21-1-2-3-1104 ann
quillsim trustee add "$vol" /test1/a bob.corp.TREE. rwf
quillsim trustee add-ad "$vol" /test1/a S-1-5-21-1-2-3-1104 rf
quillsim trustee add-ad "$vol" /test2/b S-1-5-21-1-2-3-1104 r
quillsim trustee add "$vol" /test10/c bob.corp.TREE. r
quillsim irf set "$vol" /test2 rf
quillsim quota user "$vol" bob.corp.TREE. 1000
quillsim quota user "$vol" ann 2000 --ad
quillsim quota dir "$vol" /test1 77
quillsim quota dir "$vol" /test2 88
