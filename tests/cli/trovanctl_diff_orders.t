trovanctl diff: entries matched by key whatever the order of either document, with filters that
leave entries out between those they keep, and with documents of no entry at all; a key given
twice keeps its first entry. Documents written by hand.

Two documents of the same keys in other orders (a directory quota's path written with '\' in
one and '/' in the other), and a document with no entry.

    $ printf '<metadata>\n<trusteeInfo>\n<file><path>/a</path><trustee><name>u1.T.</name><rights><read/></rights></trustee></file>\n<file><path>/b</path><trustee><name>u1.T.</name><rights><write/></rights></trustee></file>\n<file><path>/c</path><trustee><name>u2.T.</name><rights><read/></rights></trustee><inheritedRightsFilter><supervisor/></inheritedRightsFilter></file>\n<file><path>/a</path><trustee><name>u1.T.</name><rights><read/><write/></rights></trustee></file>\n</trusteeInfo>\n<userInfo><user><name>u1.T.</name><quotaAmount>100</quotaAmount></user></userInfo>\n<dirInfo><directory><path>\\d\\e</path><quotaAmount>5</quotaAmount></directory></dirInfo>\n</metadata>\n' > old.xml
    ? 0
    $ printf '<metadata>\n<trusteeInfo>\n<file><path>/e</path><trustee type="adID"><name>Ann</name><id>S-1-5-21-7</id><rights><read/></rights></trustee></file>\n<file><path>/c</path><inheritedRightsFilter><supervisor/></inheritedRightsFilter><trustee><name>u2.T.</name><rights><read/></rights></trustee></file>\n<file><path>/b</path><trustee><name>u1.T.</name><rights><write/><read/></rights></trustee></file>\n</trusteeInfo>\n<userInfo><user><name>u1.T.</name><quotaAmount>100</quotaAmount></user></userInfo>\n<dirInfo><directory><path>/d/e</path><quotaAmount>6</quotaAmount></directory></dirInfo>\n</metadata>\n' > new.xml
    ? 0
    $ printf '<metadata>\n<trusteeInfo>\n</trusteeInfo>\n</metadata>\n' > empty.xml
    ? 0

Each way, in JSON, with filters, and against the empty document.

    $ trovanctl diff old.xml new.xml
    > - trustee         /a u1.T. [r]
    > ~ trustee         /b u1.T. [w] -> [rw]
    > ~ directory quota /d/e 5 -> 6
    > + trustee         /e S-1-5-21-7 (Ann) [r]
    > old.xml -> new.xml: 4 differences (1 added, 1 removed, 2 changed) in 7 and 6 entries
    2> trovanctl: old.xml:6:22: the same trustee as on line 3
    ? 1
    $ trovanctl diff new.xml old.xml
    > + trustee         /a u1.T. [r]
    > + trustee         /a u1.T. [rw]
    > ~ trustee         /b u1.T. [rw] -> [w]
    > ~ directory quota /d/e 6 -> 5
    > - trustee         /e S-1-5-21-7 (Ann) [r]
    > new.xml -> old.xml: 5 differences (2 added, 1 removed, 2 changed) in 6 and 7 entries
    2> trovanctl: old.xml:6:22: the same trustee as on line 3
    ? 1
    $ trovanctl diff --json new.xml old.xml
    > {"type":"change","change":"added","kind":"trustee","path":"/a","ad":false,"name":"u1.T.","old":null,"new":"r"}
    > {"type":"change","change":"added","kind":"trustee","path":"/a","ad":false,"name":"u1.T.","old":null,"new":"rw"}
    > {"type":"change","change":"changed","kind":"trustee","path":"/b","ad":false,"name":"u1.T.","old":"rw","new":"w"}
    > {"type":"change","change":"changed","kind":"dirQuota","path":"/d/e","old":"6","new":"5"}
    > {"type":"change","change":"removed","kind":"trustee","path":"/e","ad":true,"name":"Ann","id":"S-1-5-21-7","old":"r","new":null}
    > {"type":"diffSummary","old":"new.xml","new":"old.xml","oldEntries":6,"newEntries":7,"added":2,"removed":1,"changed":2,"differences":5}
    2> trovanctl: old.xml:6:22: the same trustee as on line 3
    ? 1
    $ trovanctl diff --kind trustee old.xml new.xml
    > - trustee         /a u1.T. [r]
    > ~ trustee         /b u1.T. [w] -> [rw]
    > + trustee         /e S-1-5-21-7 (Ann) [r]
    > old.xml -> new.xml: 3 differences (1 added, 1 removed, 1 changed) in 4 and 3 entries
    2> trovanctl: old.xml:6:22: the same trustee as on line 3
    ? 1
    $ trovanctl diff --user u1.T. old.xml new.xml
    > - trustee         /a u1.T. [r]
    > ~ trustee         /b u1.T. [w] -> [rw]
    > old.xml -> new.xml: 2 differences (0 added, 1 removed, 1 changed) in 4 and 2 entries
    2> trovanctl: old.xml:6:22: the same trustee as on line 3
    ? 1
    $ trovanctl diff --path /b --path /c new.xml old.xml
    > ~ trustee         /b u1.T. [rw] -> [w]
    > new.xml -> old.xml: 1 difference (0 added, 0 removed, 1 changed) in 3 and 3 entries
    2> trovanctl: old.xml:6:22: the same trustee as on line 3
    ? 1
    $ trovanctl diff --kind dir-quota old.xml new.xml
    > ~ directory quota /d/e 5 -> 6
    > old.xml -> new.xml: 1 difference (0 added, 0 removed, 1 changed) in 1 and 1 entries
    2> trovanctl: old.xml:6:22: the same trustee as on line 3
    ? 1
    $ trovanctl diff empty.xml new.xml
    > + user quota      u1.T. 100
    > + trustee         /b u1.T. [rw]
    > + trustee         /c u2.T. [r]
    > + filter          /c [s]
    > + directory quota /d/e 6
    > + trustee         /e S-1-5-21-7 (Ann) [r]
    > empty.xml -> new.xml: 6 differences (6 added, 0 removed, 0 changed) in 0 and 6 entries
    ? 1
    $ trovanctl diff old.xml empty.xml
    > - user quota      u1.T. 100
    > - trustee         /a u1.T. [r]
    > - trustee         /b u1.T. [w]
    > - trustee         /c u2.T. [r]
    > - filter          /c [s]
    > - directory quota /d/e 5
    > old.xml -> empty.xml: 6 differences (0 added, 6 removed, 0 changed) in 7 and 0 entries
    2> trovanctl: old.xml:6:22: the same trustee as on line 3
    ? 1
    $ trovanctl diff empty.xml empty.xml
    > empty.xml -> empty.xml: 0 differences (0 added, 0 removed, 0 changed) in 0 and 0 entries
    ? 0
