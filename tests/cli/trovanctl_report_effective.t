trovanctl report --effective PATH and --effective-all: the worked cases of trovanctl(8), on a
volume (data/report_volume.sh) seeded with nested directories, filters that block and do not block, a supervisor at
the root, Arbor and AD trustees and both kinds of quota. A trustee's rights walk down from the
root: masked by each level's inherited rights filter (never the supervisor right), replaced
by its own assignment at a level; supervisor implies every right.

    $ bash $DATA/data/report_volume.sh VOL1
    ? 0

Where no filter stands in the way (/data/open's filter holds every right staff has): admin
every right from /, staff rwcef from /data. The note comes first in text.

    $ trovanctl report --effective /data/open/any saved.xml
    > note: effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted
    > PATH            USER              KIND   RIGHTS      FROM
    > /data/open/any  admin.corp.TREE.  arbor  rwceafmsvx  /
    > /data/open/any  staff.corp.TREE.  arbor  rwcef       /data
    ? 0

At /data/finance the filter rf takes w, c and e from staff; Ann's own assignment there is not
masked.

    $ trovanctl report --effective /data/finance saved.xml
    > note: effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted
    > PATH           USER                                    KIND   RIGHTS      FROM
    > /data/finance  S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     rw          /data/finance
    > /data/finance  admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data/finance  staff.corp.TREE.                        arbor  rf          /data
    ? 0

At /data/finance/reports staff's own assignment r replaces the rf it would inherit.

    $ trovanctl report --effective /data/finance/reports saved.xml
    > note: effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted
    > PATH                   USER                                    KIND   RIGHTS      FROM
    > /data/finance/reports  S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     rw          /data/finance
    > /data/finance/reports  admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data/finance/reports  staff.corp.TREE.                        arbor  r           /data/finance/reports
    ? 0

The empty filter of /data/finance/2026 blocks staff and Ann; supervisor passes it; bob's
assignment on q1 stands.

    $ trovanctl report --effective /data/finance/2026 saved.xml
    > note: effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted
    > PATH                USER              KIND   RIGHTS      FROM
    > /data/finance/2026  admin.corp.TREE.  arbor  rwceafmsvx  /
    ? 0
    $ trovanctl report --effective /data/finance/2026/q1/ saved.xml
    > note: effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted
    > PATH                   USER              KIND   RIGHTS      FROM
    > /data/finance/2026/q1  admin.corp.TREE.  arbor  rwceafmsvx  /
    > /data/finance/2026/q1  bob.corp.TREE.    arbor  rwf         /data/finance/2026/q1
    ? 0

A path with no entry of its own, even one the volume does not have, gets what comes down.

    $ trovanctl report --effective /home/ann/mail saved.xml
    > note: effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted
    > PATH            USER              KIND   RIGHTS      FROM
    > /home/ann/mail  admin.corp.TREE.  arbor  rwceafmsvx  /
    ? 0

CSV and JSON: the note goes to standard error beside CSV (the table stays one table), and is
the first object of JSON Lines.

    $ trovanctl report --effective /data/finance --format csv saved.xml | tr -d '\r'
    > path,entry,user,id,kind,rights,quota,from
    > /data/finance,effective,"Ann ""Q"" & Co – ü",S-1-5-21-1-2-3-1104,ad,rw,,/data/finance
    > /data/finance,effective,admin.corp.TREE.,,arbor,rwceafmsvx,,/
    > /data/finance,effective,staff.corp.TREE.,,arbor,rf,,/data
    2> trovanctl: note: effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted
    ? 0
    $ trovanctl report --effective /data/finance --format json saved.xml
    > {"type":"note","text":"effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted"}
    > {"type":"effective","path":"/data/finance","user":"Ann \"Q\" & Co – ü","id":"S-1-5-21-1-2-3-1104","kind":"ad","rights":"rw","from":"/data/finance"}
    > {"type":"effective","path":"/data/finance","user":"admin.corp.TREE.","kind":"arbor","rights":"rwceafmsvx","from":"/"}
    > {"type":"effective","path":"/data/finance","user":"staff.corp.TREE.","kind":"arbor","rights":"rf","from":"/data"}
    ? 0

--effective-all: every path that has an entry, in tree order, in one walk of the tree; the
filters apply to its lines.

    $ trovanctl report --effective-all saved.xml
    > note: effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted
    > PATH                   USER                                    KIND   RIGHTS      FROM
    > /                      admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data                  admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data                  staff.corp.TREE.                        arbor  rwcef       /data
    > /data/finance          S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     rw          /data/finance
    > /data/finance          admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data/finance          staff.corp.TREE.                        arbor  rf          /data
    > /data/finance/2026     admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data/finance/2026/q1  admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data/finance/2026/q1  bob.corp.TREE.                          arbor  rwf         /data/finance/2026/q1
    > /data/finance/reports  S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     rw          /data/finance
    > /data/finance/reports  admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data/finance/reports  staff.corp.TREE.                        arbor  r           /data/finance/reports
    > /data/open             admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data/open             staff.corp.TREE.                        arbor  rwcef       /data
    > /data/x, "y" & <z>     admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data/x, "y" & <z>     bob.corp.TREE.                          arbor  r           /data/x, "y" & <z>
    > /data/x, "y" & <z>     staff.corp.TREE.                        arbor  rwcef       /data
    > /home/ann              admin.corp.TREE.                        arbor  rwceafmsvx  /
    ? 0
    $ trovanctl report --effective-all --path /data/finance --rights w saved.xml
    > note: effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted
    > PATH                   USER                                    KIND   RIGHTS      FROM
    > /data/finance          S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     rw          /data/finance
    > /data/finance          admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data/finance/2026     admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data/finance/2026/q1  admin.corp.TREE.                        arbor  rwceafmsvx  /
    > /data/finance/2026/q1  bob.corp.TREE.                          arbor  rwf         /data/finance/2026/q1
    > /data/finance/reports  S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     rw          /data/finance
    > /data/finance/reports  admin.corp.TREE.                        arbor  rwceafmsvx  /
    ? 0
    $ trovanctl report --effective-all --user S-1-5-21-1-2-3-1104 --format json saved.xml
    > {"type":"note","text":"effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted"}
    > {"type":"effective","path":"/data/finance","user":"Ann \"Q\" & Co – ü","id":"S-1-5-21-1-2-3-1104","kind":"ad","rights":"rw","from":"/data/finance"}
    > {"type":"effective","path":"/data/finance/reports","user":"Ann \"Q\" & Co – ü","id":"S-1-5-21-1-2-3-1104","kind":"ad","rights":"rw","from":"/data/finance"}
    ? 0
    $ trovanctl report --effective-all --kind ad --format csv saved.xml | tr -d '\r'
    > path,entry,user,id,kind,rights,quota,from
    > /data/finance,effective,"Ann ""Q"" & Co – ü",S-1-5-21-1-2-3-1104,ad,rw,,/data/finance
    > /data/finance/reports,effective,"Ann ""Q"" & Co – ü",S-1-5-21-1-2-3-1104,ad,rw,,/data/finance
    2> trovanctl: note: effective rights come from trustee assignments and inherited rights filters only; group membership and security equivalence are not counted
    ? 0
