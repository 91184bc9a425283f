trovanctl diff: the differences between two documents, entry by entry, sorted by path, whatever
order each document holds its entries in; vol:NAME stands for a live volume.

Two volumes that differ in a few entries.

    $ quillsim volume add VOL1 && quillsim volume add VOL2 && for v in VOL1 VOL2; do quillsim file add $v /a.txt /b/y.txt /c.txt; done
    ? 0
    $ quillsim user add u0.corp.TREE. && quillsim user add u1.corp.TREE.
    ? 0
    $ quillsim trustee add VOL1 /a.txt u0.corp.TREE. rw && quillsim trustee add VOL1 /b u0.corp.TREE. rf && quillsim trustee add VOL1 /c.txt u1.corp.TREE. rwc
    ? 0
    $ quillsim trustee add VOL2 /a.txt u0.corp.TREE. rwc && quillsim trustee add VOL2 /b/y.txt u1.corp.TREE. r && quillsim trustee add VOL2 /c.txt u1.corp.TREE. rwc
    ? 0
    $ trovan save VOL1 > one.xml && trovan save VOL2 > two.xml
    ? 0
    $ trovanctl diff one.xml two.xml
    > ~ trustee         /a.txt u0.corp.TREE. [rw] -> [rwc]
    > - trustee         /b u0.corp.TREE. [rf]
    > + trustee         /b/y.txt u1.corp.TREE. [r]
    > one.xml -> two.xml: 3 differences (1 added, 1 removed, 1 changed) in 3 and 3 entries
    ? 1
    $ trovanctl diff one.xml vol:VOL1
    > one.xml -> vol:VOL1: 0 differences (0 added, 0 removed, 0 changed) in 3 and 3 entries
    ? 0
    $ trovanctl diff --json vol:VOL1 vol:VOL2
    > {"type":"change","change":"changed","kind":"trustee","path":"/a.txt","ad":false,"name":"u0.corp.TREE.","old":"rw","new":"rwc"}
    > {"type":"change","change":"removed","kind":"trustee","path":"/b","ad":false,"name":"u0.corp.TREE.","old":"rf","new":null}
    > {"type":"change","change":"added","kind":"trustee","path":"/b/y.txt","ad":false,"name":"u1.corp.TREE.","old":null,"new":"r"}
    > {"type":"diffSummary","old":"vol:VOL1","new":"vol:VOL2","oldEntries":3,"newEntries":3,"added":1,"removed":1,"changed":1,"differences":3}
    ? 1

Filters: by path (the path itself and what is under it), by user, by kind; repeatable.

    $ trovanctl diff --path /b one.xml two.xml
    > - trustee         /b u0.corp.TREE. [rf]
    > + trustee         /b/y.txt u1.corp.TREE. [r]
    > one.xml -> two.xml: 2 differences (1 added, 1 removed, 0 changed) in 1 and 1 entries
    ? 1
    $ trovanctl diff --path /b/ --path /c.txt --user u1.corp.TREE. one.xml two.xml
    > + trustee         /b/y.txt u1.corp.TREE. [r]
    > one.xml -> two.xml: 1 difference (1 added, 0 removed, 0 changed) in 1 and 2 entries
    ? 1
    $ trovanctl diff --kind filter one.xml two.xml
    > one.xml -> two.xml: 0 differences (0 added, 0 removed, 0 changed) in 0 and 0 entries
    ? 0
    $ trovanctl diff --kind bogus one.xml two.xml
    2> trovanctl: --kind: bogus not in {trustee,filter,user-quota,dir-quota}
    2> Try 'trovanctl diff --help' for more information.
    ? 2

Quotas, filters and AD users: a change of amount or of rights; an AD user is known by its SID.

    $ quillsim quota user VOL1 u0.corp.TREE. 1000 && quillsim quota user VOL2 u0.corp.TREE. 2000 && quillsim quota dir VOL2 /b 50 && quillsim irf set VOL1 /c.txt s && quillsim irf set VOL2 /c.txt sr
    ? 0
    $ quillsim user add-ad S-1-5-21-1-2-3-1001 'Ann Lee' && quillsim trustee add-ad VOL2 /a.txt S-1-5-21-1-2-3-1001 r --name 'Ann Lee'
    ? 0
    $ trovanctl diff vol:VOL1 vol:VOL2
    > ~ user quota      u0.corp.TREE. 1000 -> 2000
    > + trustee         /a.txt S-1-5-21-1-2-3-1001 (Ann Lee) [r]
    > ~ trustee         /a.txt u0.corp.TREE. [rw] -> [rwc]
    > - trustee         /b u0.corp.TREE. [rf]
    > + directory quota /b 50
    > + trustee         /b/y.txt u1.corp.TREE. [r]
    > ~ filter          /c.txt [s] -> [rs]
    > vol:VOL1 -> vol:VOL2: 7 differences (3 added, 1 removed, 3 changed) in 5 and 7 entries
    ? 1
    $ trovanctl diff --json --kind user-quota --kind dir-quota vol:VOL1 vol:VOL2
    > {"type":"change","change":"changed","kind":"userQuota","ad":false,"name":"u0.corp.TREE.","old":"1000","new":"2000"}
    > {"type":"change","change":"added","kind":"dirQuota","path":"/b","old":null,"new":"50"}
    > {"type":"diffSummary","old":"vol:VOL1","new":"vol:VOL2","oldEntries":1,"newEntries":2,"added":1,"removed":0,"changed":1,"differences":2}
    ? 1

The JSON spellings of the quota kinds are taken by --kind too, and select the same entries.

    $ trovanctl diff --json --kind userQuota --kind dirQuota vol:VOL1 vol:VOL2
    > {"type":"change","change":"changed","kind":"userQuota","ad":false,"name":"u0.corp.TREE.","old":"1000","new":"2000"}
    > {"type":"change","change":"added","kind":"dirQuota","path":"/b","old":null,"new":"50"}
    > {"type":"diffSummary","old":"vol:VOL1","new":"vol:VOL2","oldEntries":1,"newEntries":2,"added":1,"removed":0,"changed":1,"differences":2}
    ? 1
    $ trovanctl diff --kind userQuota vol:VOL1 vol:VOL2
    > ~ user quota      u0.corp.TREE. 1000 -> 2000
    > vol:VOL1 -> vol:VOL2: 1 difference (0 added, 0 removed, 1 changed) in 1 and 1 entries
    ? 1

A document read from standard input (user quotas, which have no path, come first).

    $ trovan save VOL1 > one.xml && trovanctl diff - vol:VOL1 < one.xml
    > (standard input) -> vol:VOL1: 0 differences (0 added, 0 removed, 0 changed) in 5 and 5 entries
    ? 0

Trouble: a document that is not well-formed, a missing file, an unknown volume, a missing operand.

    $ sed 's#</trustee>##' one.xml > broken.xml && trovanctl diff broken.xml one.xml
    2> trovanctl: broken.xml:5:3: not well-formed XML: mismatched tag (the open element is <trustee> of line 4)
    ? 2
    $ trovanctl diff missing.xml one.xml
    2> trovanctl: missing.xml: No such file or directory
    ? 2
    $ trovanctl diff vol:NOPE one.xml
    2> trovanctl: vol:NOPE: no such volume (/_admin/Manage_QUILL/Volume/NOPE/: No such file or directory)
    ? 2
    $ trovanctl diff one.xml
    2> trovanctl: NEW is required
    2> Try 'trovanctl diff --help' for more information.
    ? 2
