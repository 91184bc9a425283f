trovanctl plan, apply and verify on one volume through its life: empty, partly restored, fully
restored, carrying trustees the document does not hold, and refusing entries.

A source volume is saved; the target DST has the same files and is empty.

    $ quillsim volume add SRC && quillsim volume add DST && quillsim file add SRC /a /b /c /d/ && quillsim file add DST /a /b /c /d/
    ? 0
    $ quillsim user add bob.corp.TREE. && quillsim user add eve.corp.TREE. && quillsim user add-ad S-1-5-21-1-2-3-1104 ann && quillsim user add-ad S-1-5-21-9 zed
    ? 0
    $ quillsim trustee add SRC /a bob.corp.TREE. rwf && quillsim trustee add SRC /b eve.corp.TREE. r && quillsim trustee add-ad SRC /b S-1-5-21-1-2-3-1104 rf && quillsim irf set SRC /a rf && quillsim quota user SRC bob.corp.TREE. 1000 && quillsim quota dir SRC /d 5000
    ? 0
    $ trovan save SRC > doc.xml
    ? 0

Empty volume: the plan lists every entry to add; verify finds them all missing and writes them
as a document; --out writes the same changes.

    $ trovanctl plan DST doc.xml --out changes.xml
    > + trustee /a bob.corp.TREE. [rwf]
    > + inherited rights filter /a [rf]
    > + trustee /b eve.corp.TREE. [r]
    > + trustee /b S-1-5-21-1-2-3-1104 (ann) [rf]
    > + user quota bob.corp.TREE. 1000
    > + directory quota /d 5000
    > plan DST <- doc.xml: 6 to add, 0 to change, 0 in place, 0 skipped, 0 never sent (0 may be refused); 0 on the volume only (0 to remove)
    ? 1
    $ trovanctl verify DST doc.xml --remaining remaining.xml
    > missing   trustee /a bob.corp.TREE. [rwf]
    > missing   inherited rights filter /a [rf]
    > missing   trustee /b eve.corp.TREE. [r]
    > missing   trustee /b S-1-5-21-1-2-3-1104 (ann) [rf]
    > missing   user quota bob.corp.TREE. 1000
    > missing   directory quota /d 5000
    > verify DST <- doc.xml: 0 in place, 6 missing, 0 different, 0 skipped
    ? 1
    $ cmp changes.xml remaining.xml && trovanctl check changes.xml
    > changes.xml: 6 entries (3 trustees, 1 filter, 1 user quota, 1 directory quota); trovan restore would send 6 requests (3 addTrustee, 1 modifyInheritedRightsFilter, 1 userSpaceRestrictions, 1 addQuota); 0 findings
    ? 0

Partly restored: trovan restore of the first file alone, then the plan counts what is in place
and lists the rest.

    $ trovan restore DST -f '/a$' < doc.xml
    ? 0
    $ trovanctl plan DST doc.xml
    > + trustee /b eve.corp.TREE. [r]
    > + trustee /b S-1-5-21-1-2-3-1104 (ann) [rf]
    > + directory quota /d 5000
    > plan DST <- doc.xml: 3 to add, 0 to change, 3 in place, 0 skipped, 0 never sent (0 may be refused); 0 on the volume only (0 to remove)
    ? 1

The changes document, applied by trovan restore itself, completes the volume.

    $ trovanctl plan DST doc.xml --out rest.xml >/dev/null; quillsim log --clear; trovan restore DST < rest.xml && quillsim log --root-as '$SANDBOX'
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>eve.corp.TREE.</name><rights><read/></rights><fileName>$SANDBOX/mnt/DST/b</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee type="adID"><userID>S-1-5-21-1-2-3-1104</userID><rights><read/><fileScan/></rights><fileName>$SANDBOX/mnt/DST/b</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><directoryQuota><addQuota><fileName>$SANDBOX/mnt/DST/d</fileName><gemelPath/><quotaAmount>5000</quotaAmount></addQuota></directoryQuota></fileRequest>
    ? 0
    $ trovanctl verify DST doc.xml
    > verify DST <- doc.xml: 6 in place, 0 missing, 0 different, 0 skipped
    ? 0
    $ trovanctl plan DST doc.xml
    > plan DST <- doc.xml: 0 to add, 0 to change, 6 in place, 0 skipped, 0 never sent (0 may be refused); 0 on the volume only (0 to remove)
    ? 0

A second volume, with rights changed and trustees the document does not hold: the plan shows
each change with what the volume has now, and the extra trustees as kept. --prune marks the
removable ones (an AD trustee by its SID; an Arbor trustee without an identifier cannot be
named by the removal request).

    $ quillsim volume add TWO && quillsim file add TWO /a /b /c /d/ && quillsim trustee add TWO /a bob.corp.TREE. r && quillsim trustee add-ad TWO /c S-1-5-21-9 rw && quillsim trustee add TWO /c eve.corp.TREE. rw && quillsim quota dir TWO /d 10
    ? 0
    $ trovanctl plan TWO doc.xml
    > ~ trustee /a bob.corp.TREE. [rwf] (now [r])
    > + inherited rights filter /a [rf]
    > + trustee /b eve.corp.TREE. [r]
    > + trustee /b S-1-5-21-1-2-3-1104 (ann) [rf]
    > + user quota bob.corp.TREE. 1000
    > ~ directory quota /d 5000 (now 10)
    > = trustee /c S-1-5-21-9 (zed) [rw] (not in the document: a restore keeps it)
    > = trustee /c eve.corp.TREE. [rw] (not in the document: a restore keeps it)
    > plan TWO <- doc.xml: 4 to add, 2 to change, 0 in place, 0 skipped, 0 never sent (0 may be refused); 2 on the volume only (0 to remove)
    ? 1
    $ trovanctl plan TWO doc.xml --prune --json
    > {"type":"plan","action":"change","line":4,"kind":"trustee","path":"/a","user":"bob.corp.TREE.","value":"[rwf]","was":"[r]"}
    > {"type":"plan","action":"add","line":5,"kind":"inherited rights filter","path":"/a","user":"","value":"[rf]"}
    > {"type":"plan","action":"add","line":8,"kind":"trustee","path":"/b","user":"eve.corp.TREE.","value":"[r]"}
    > {"type":"plan","action":"add","line":9,"kind":"trustee","path":"/b","user":"S-1-5-21-1-2-3-1104 (ann)","value":"[rf]"}
    > {"type":"plan","action":"add","line":13,"kind":"user quota","path":"","user":"bob.corp.TREE.","value":"1000"}
    > {"type":"plan","action":"change","line":16,"kind":"directory quota","path":"/d","user":"","value":"5000","was":"10"}
    > {"type":"plan","action":"remove","kind":"trustee","path":"/c","user":"S-1-5-21-9 (zed)","value":"[rw]"}
    > {"type":"plan","action":"extra","kind":"trustee","path":"/c","user":"eve.corp.TREE.","value":"[rw]","reason":"not removable: the file system removes a trustee by its identifier, and this one has none"}
    > {"type":"plan-summary","volume":"TWO","document":"doc.xml","add":4,"change":2,"inPlace":0,"skipped":0,"refused":0,"flagged":0,"extra":2,"remove":1}
    ? 1
    $ quillsim log --clear && trovanctl apply TWO doc.xml --prune --rejects rejects.xml
    > applied   trustee /a bob.corp.TREE. [rwf]
    > applied   inherited rights filter /a [rf]
    > applied   trustee /b eve.corp.TREE. [r]
    > applied   trustee /b S-1-5-21-1-2-3-1104 (ann) [rf]
    > applied   user quota bob.corp.TREE. 1000
    > applied   directory quota /d 5000
    > removed   trustee /c S-1-5-21-9 (zed) [rw]
    > kept      trustee /c eve.corp.TREE. [rw]: not removable: the file system removes a trustee by its identifier, and this one has none
    > apply TWO <- doc.xml: 6 applied, 0 in place, 0 refused, 0 skipped, 1 removed
    ? 0
    $ quillsim log --root-as '$SANDBOX'
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/><write/><fileScan/></rights><fileName>$SANDBOX/mnt/TWO/a</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><modifyInheritedRightsFilter><inheritedRightsFilter><read/><fileScan/></inheritedRightsFilter><fileName>$SANDBOX/mnt/TWO/a</fileName><gemelPath/></modifyInheritedRightsFilter></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>eve.corp.TREE.</name><rights><read/></rights><fileName>$SANDBOX/mnt/TWO/b</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee type="adID"><userID>S-1-5-21-1-2-3-1104</userID><rights><read/><fileScan/></rights><fileName>$SANDBOX/mnt/TWO/b</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><quillRequest><userSpaceRestrictions><set><volumeName>TWO</volumeName><userName>bob.corp.TREE.</userName><quota>1000</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><directoryQuota><addQuota><fileName>$SANDBOX/mnt/TWO/d</fileName><gemelPath/><quotaAmount>5000</quotaAmount></addQuota></directoryQuota></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee type="adID"><fileName>TWO:/c</fileName><userID>S-1-5-21-9</userID></removeTrustee></trustee></fileRequest>
    ? 0
    $ trovanctl verify TWO doc.xml && trovanctl plan TWO doc.xml --prune
    > verify TWO <- doc.xml: 6 in place, 0 missing, 0 different, 0 skipped
    > = trustee /c eve.corp.TREE. [rw] (not in the document: a restore keeps it); not removable: the file system removes a trustee by its identifier, and this one has none
    > plan TWO <- doc.xml: 0 to add, 0 to change, 6 in place, 0 skipped, 0 never sent (0 may be refused); 1 on the volume only (0 to remove)
    ? 0

Run again, nothing is sent: every entry is in place.

    $ quillsim log --clear && trovanctl apply TWO doc.xml --json && quillsim log
    > {"type":"apply","action":"in-place","line":4,"kind":"trustee","path":"/a","user":"bob.corp.TREE.","value":"[rwf]"}
    > {"type":"apply","action":"in-place","line":5,"kind":"inherited rights filter","path":"/a","user":"","value":"[rf]"}
    > {"type":"apply","action":"in-place","line":8,"kind":"trustee","path":"/b","user":"eve.corp.TREE.","value":"[r]"}
    > {"type":"apply","action":"in-place","line":9,"kind":"trustee","path":"/b","user":"S-1-5-21-1-2-3-1104 (ann)","value":"[rf]"}
    > {"type":"apply","action":"in-place","line":13,"kind":"user quota","path":"","user":"bob.corp.TREE.","value":"1000"}
    > {"type":"apply","action":"in-place","line":16,"kind":"directory quota","path":"/d","user":"","value":"5000"}
    > {"type":"apply-summary","volume":"TWO","document":"doc.xml","applied":0,"inPlace":6,"refused":0,"skipped":0,"removed":0,"notSent":0}
    ? 0
    $ cat rejects.xml
    > <metadata>
    > </metadata>
    ? 0
