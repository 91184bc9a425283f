The examples of trovanctl(8), run as written.

A volume with a trustee, a filter and quotas, saved.

    $ quillsim volume add VOL1 && quillsim file add VOL1 /docs/a.txt /q/ && quillsim user add admin.corp.TREE.
    ? 0
    $ quillsim trustee add VOL1 /docs/a.txt admin.corp.TREE. rwf && quillsim irf set VOL1 /docs s && quillsim quota user VOL1 admin.corp.TREE. 1000 && quillsim quota dir VOL1 /q 50
    ? 0
    $ trovan save VOL1 > saved.xml
    ? 0

Check a saved document before restoring it to VOL1.

    $ trovanctl check --volume VOL1 saved.xml
    > saved.xml: 4 entries (1 trustee, 1 filter, 1 user quota, 1 directory quota); trovan restore would send 4 requests (1 addTrustee, 1 modifyInheritedRightsFilter, 1 userSpaceRestrictions, 1 addQuota); 0 findings
    ? 0

Check a document for a restore of the trustees of Arbor users only, in JSON Lines.

    $ trovanctl check -m t -u arbor --json saved.xml
    > {"type":"summary","file":"saved.xml","entries":{"trustee":1,"filter":1,"userQuota":1,"dirQuota":1,"total":4},"requests":{"addTrustee":1,"modifyInheritedRightsFilter":1,"userSpaceRestrictions":0,"addQuota":0,"total":2},"compared":true,"findings":0}
    ? 0

Check what a formatter made of a document.

    $ xmllint --format saved.xml | trovanctl check -
    > trovanctl: (standard input):1:1: an XML declaration: trovan restore refuses a document that does not start with <metadata>
    > trovanctl: (standard input):7:7: trovan restore would stop with status 255 before this entry: nothing is sent for it or the 3 entries after it
    > (standard input): 4 entries (1 trustee, 1 filter, 1 user quota, 1 directory quota); trovan restore would send 0 requests (0 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 2 findings
    ? 1

The safe workflow, check, plan, apply, verify, here into an empty twin VOL2 of VOL1's files.

    $ quillsim volume add VOL2 && quillsim file add VOL2 /docs/a.txt /q/
    ? 0
    $ trovanctl check --volume VOL2 saved.xml
    > saved.xml: 4 entries (1 trustee, 1 filter, 1 user quota, 1 directory quota); trovan restore would send 4 requests (1 addTrustee, 1 modifyInheritedRightsFilter, 1 userSpaceRestrictions, 1 addQuota); 0 findings
    ? 0
    $ trovanctl plan VOL2 saved.xml
    > + inherited rights filter /docs [s]
    > + trustee /docs/a.txt admin.corp.TREE. [rwf]
    > + user quota admin.corp.TREE. 1000
    > + directory quota /q 50
    > plan VOL2 <- saved.xml: 4 to add, 0 to change, 0 in place, 0 skipped, 0 never sent (0 may be refused); 0 on the volume only (0 to remove)
    ? 1
    $ trovanctl apply VOL2 saved.xml --rejects rejected.xml
    > applied   inherited rights filter /docs [s]
    > applied   trustee /docs/a.txt admin.corp.TREE. [rwf]
    > applied   user quota admin.corp.TREE. 1000
    > applied   directory quota /q 50
    > apply VOL2 <- saved.xml: 4 applied, 0 in place, 0 refused, 0 skipped, 0 removed
    ? 0
    $ trovanctl verify VOL2 saved.xml
    > verify VOL2 <- saved.xml: 4 in place, 0 missing, 0 different, 0 skipped
    ? 0
