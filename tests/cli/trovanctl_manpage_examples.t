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
    > {"type":"summary","file":"saved.xml","entries":{"trustee":1,"filter":1,"userQuota":1,"dirQuota":1,"total":4},"requests":{"addTrustee":1,"modifyInheritedRightsFilter":1,"userSpaceRestrictions":0,"addQuota":0,"total":2},"findings":0}
    ? 0

Check what a formatter made of a document.

    $ xmllint --format saved.xml | trovanctl check -
    > trovanctl: (standard input):1:1: an XML declaration: trovan restore refuses a document that does not start with <metadata>
    > (standard input): 4 entries (1 trustee, 1 filter, 1 user quota, 1 directory quota); trovan restore would send 4 requests (1 addTrustee, 1 modifyInheritedRightsFilter, 1 userSpaceRestrictions, 1 addQuota); 1 finding
    ? 1

The volume of the worked cases of effective rights, saved (data/report_volume.sh).

    $ bash $DATA/data/report_volume.sh VOL2 --no-admin
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
