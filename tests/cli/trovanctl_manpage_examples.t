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

Compare a saved document with the live volume.

    $ quillsim trustee add VOL1 /docs/a.txt admin.corp.TREE. rw
    ? 0
    $ trovanctl diff saved.xml vol:VOL1
    > ~ trustee         /docs/a.txt admin.corp.TREE. [rwf] -> [rw]
    > saved.xml -> vol:VOL1: 1 difference (0 added, 0 removed, 1 changed) in 4 and 4 entries
    ? 1

Convert a legacy report, and see what trovan restore -w would apply.

    $ printf 'TRUSTEE.KXM\n"TRUSTEE","VOL1:\\DOCS","x","ADMIN","RF"\n' > report.txt
    ? 0
    $ trovanctl convert -t CORP -o converted.xml report.txt
    ? 0
    $ cat converted.xml
    > <metadata>
    > <trusteeInfo>
    > <file><zid></zid><path><![CDATA[/DOCS]]></path>
    > <trustee><name>ADMIN.CORP</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
    $ trovanctl convert --raw -t CORP report.txt
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/DOCS</path>
    > <trustee><name>ADMIN.CORP</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    >! </metadata>
    ? 0

Move a document to another tree and folder.

    $ trovanctl map -t NEW -r /docs=/new -o moved.xml saved.xml
    2> trovanctl: saved.xml:14:1: directory quota /q: the path /q is under no -r OLD; kept unchanged
    ? 1
    $ cat moved.xml
    > <metadata>
    > <trusteeInfo>
    > <file><zid>601066489</zid><path><![CDATA[/new]]></path>
    > <inheritedRightsFilter value="S"><supervisor/></inheritedRightsFilter>
    > </file>
    > <file><zid>857901855</zid><path><![CDATA[/new/a.txt]]></path>
    > <trustee><name>admin.corp.NEW.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>admin.corp.NEW.</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>824375037</zid><path>\q</path><spaceUsed>0</spaceUsed><quotaAmount>50</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

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

The volume of the worked cases of effective rights, saved (data/report_volume.sh).

    $ bash $DATA/data/report_volume.sh VOL3 --no-admin
    ? 0

Who holds write or more under /data/finance, and who can get into it.

    $ trovanctl report --path /data/finance --rights w saved.xml
    > PATH                   ENTRY    USER                                    KIND   RIGHTS  QUOTA
    > /data/finance          trustee  S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     rw      -
    > /data/finance/2026/q1  trustee  bob.corp.TREE.                          arbor  rwf     -
    ? 0
    $ trovanctl report --effective /data/finance saved.xml
    > note: effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted
    > PATH           USER                                    KIND   RIGHTS      FROM
    > /data/finance  S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     rw          /data/finance
    > /data/finance  admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data/finance  staff.corp.TREE.                        arbor  rf          /data
    ? 0

Each user's assignments as CSV, and the page to browse.

    $ trovanctl report --by user --format csv saved.xml
    >@ data/report_by_user.csv
    ? 0
    $ trovanctl report --html report.html saved.xml
    ? 0
    $ grep -c '<script' report.html && rm report.html
    > 2
    ? 0
