trovanctl plan: what a restore of a document would change on a live volume.

A saved volume, and an empty twin with the same files.

    $ quillsim volume add SRC && quillsim volume add DST && quillsim file add SRC /a /b /d/ && quillsim file add DST /a /b /d/ && quillsim user add bob.corp.TREE. && quillsim user add eve.corp.TREE. && quillsim user add-ad S-1-5-21-1-2-3-1104 ann
    ? 0
    $ quillsim trustee add SRC /a bob.corp.TREE. rwf && quillsim trustee add-ad SRC /b S-1-5-21-1-2-3-1104 rf && quillsim irf set SRC /a rf && quillsim quota user SRC bob.corp.TREE. 1000 && quillsim quota dir SRC /d 5000
    ? 0
    $ trovan save SRC > doc.xml
    ? 0

On the empty volume everything is to add; the exit status 1 says changes are pending.

    $ trovanctl plan DST doc.xml
    > + trustee /a bob.corp.TREE. [rwf]
    > + inherited rights filter /a [rf]
    > + trustee /b S-1-5-21-1-2-3-1104 (ann) [rf]
    > + user quota bob.corp.TREE. 1000
    > + directory quota /d 5000
    > plan DST <- doc.xml: 5 to add, 0 to change, 0 in place, 0 skipped, 0 never sent (0 may be refused); 0 on the volume only (0 to remove)
    ? 1
