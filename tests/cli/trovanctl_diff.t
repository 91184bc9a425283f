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
