trovanctl report on a saved volume (data/report_volume.sh) with nested directories: a supervisor at the root, an
Arbor trustee on /data, a filter on /data/open that blocks nothing it names, a filter rf on
/data/finance, an empty filter on /data/finance/2026 that blocks everything but supervisor, an
AD trustee whose name holds quotes, an ampersand and non-ASCII letters, a path with a comma,
quotes, an ampersand and angle brackets, and both kinds of quota.

    $ bash $DATA/data/report_volume.sh VOL1
    ? 0

The default view, by path: each path's trustees (name, kind, rights), its inherited rights
filter and its directory quota, in tree order, as an aligned table ("-" in an empty cell).

    $ trovanctl report saved.xml
    > PATH                   ENTRY      USER                                    KIND   RIGHTS    QUOTA
    > /                      trustee    admin.corp.TREE.                        arbor  s         -
    > /data                  trustee    staff.corp.TREE.                        arbor  rwcef     -
    > /data/finance          trustee    S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     rw        -
    > /data/finance          filter     -                                       -      rf        -
    > /data/finance          dir-quota  -                                       -      -         77
    > /data/finance/2026     filter     -                                       -      -         -
    > /data/finance/2026/q1  trustee    bob.corp.TREE.                          arbor  rwf       -
    > /data/finance/reports  trustee    staff.corp.TREE.                        arbor  r         -
    > /data/open             filter     -                                       -      rwceafms  -
    > /data/x, "y" & <z>     trustee    bob.corp.TREE.                          arbor  r         -
    > /home/ann              dir-quota  -                                       -      -         500
    ? 0

By user: each user's assignments across the volume, then its user quota; users in the order
of their labels (an AD user is "SID (name)").

    $ trovanctl report --by user saved.xml
    > USER                                    KIND   ENTRY       PATH                   RIGHTS  QUOTA
    > S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     trustee     /data/finance          rw      -
    > S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     user-quota  -                      -       2000
    > admin.corp.TREE.                        arbor  trustee     /                      s       -
    > bob.corp.TREE.                          arbor  trustee     /data/finance/2026/q1  rwf     -
    > bob.corp.TREE.                          arbor  trustee     /data/x, "y" & <z>     r       -
    > bob.corp.TREE.                          arbor  user-quota  -                      -       1000
    > staff.corp.TREE.                        arbor  trustee     /data                  rwcef   -
    > staff.corp.TREE.                        arbor  trustee     /data/finance/reports  r       -
    ? 0

CSV (RFC 4180): a header row, CR LF line ends, fields with a comma or quote quoted and their
quotes doubled. Shown through od -c for the CR bytes of one line, then with the CRs taken
away.

    $ trovanctl report --format csv saved.xml | head -2 | od -An -c | head -3
    >    p   a   t   h   ,   e   n   t   r   y   ,   u   s   e   r   ,
    >    i   d   ,   k   i   n   d   ,   r   i   g   h   t   s   ,   q
    >    u   o   t   a   ,   f   r   o   m  \r  \n   /   ,   t   r   u
    ? 0
    $ trovanctl report --format csv saved.xml | tr -d '\r'
    > path,entry,user,id,kind,rights,quota,from
    > /,trustee,admin.corp.TREE.,,arbor,s,,
    > /data,trustee,staff.corp.TREE.,,arbor,rwcef,,
    > /data/finance,trustee,"Ann ""Q"" & Co – ü",S-1-5-21-1-2-3-1104,ad,rw,,
    > /data/finance,filter,,,,rf,,
    > /data/finance,dir-quota,,,,,77,
    > /data/finance/2026,filter,,,,,,
    > /data/finance/2026/q1,trustee,bob.corp.TREE.,,arbor,rwf,,
    > /data/finance/reports,trustee,staff.corp.TREE.,,arbor,r,,
    > /data/open,filter,,,,rwceafms,,
    > "/data/x, ""y"" & <z>",trustee,bob.corp.TREE.,,arbor,r,,
    > /home/ann,dir-quota,,,,,500,
    ? 0
    $ trovanctl report --by user --format csv saved.xml | tr -d '\r'
    > path,entry,user,id,kind,rights,quota,from
    > /data/finance,trustee,"Ann ""Q"" & Co – ü",S-1-5-21-1-2-3-1104,ad,rw,,
    > ,user-quota,"Ann ""Q"" & Co – ü",S-1-5-21-1-2-3-1104,ad,,2000,
    > /,trustee,admin.corp.TREE.,,arbor,s,,
    > /data/finance/2026/q1,trustee,bob.corp.TREE.,,arbor,rwf,,
    > "/data/x, ""y"" & <z>",trustee,bob.corp.TREE.,,arbor,r,,
    > ,user-quota,bob.corp.TREE.,,arbor,,1000,
    > /data,trustee,staff.corp.TREE.,,arbor,rwcef,,
    > /data/finance/reports,trustee,staff.corp.TREE.,,arbor,r,,
    ? 0

JSON Lines: one object a line, with the members the line has; text as it stands in UTF-8,
quotes escaped.

    $ trovanctl report --format json saved.xml
    > {"type":"trustee","path":"/","user":"admin.corp.TREE.","kind":"arbor","rights":"s"}
    > {"type":"trustee","path":"/data","user":"staff.corp.TREE.","kind":"arbor","rights":"rwcef"}
    > {"type":"trustee","path":"/data/finance","user":"Ann \"Q\" & Co – ü","id":"S-1-5-21-1-2-3-1104","kind":"ad","rights":"rw"}
    > {"type":"filter","path":"/data/finance","rights":"rf"}
    > {"type":"dir-quota","path":"/data/finance","quota":"77"}
    > {"type":"filter","path":"/data/finance/2026","rights":""}
    > {"type":"trustee","path":"/data/finance/2026/q1","user":"bob.corp.TREE.","kind":"arbor","rights":"rwf"}
    > {"type":"trustee","path":"/data/finance/reports","user":"staff.corp.TREE.","kind":"arbor","rights":"r"}
    > {"type":"filter","path":"/data/open","rights":"rwceafms"}
    > {"type":"trustee","path":"/data/x, \"y\" & <z>","user":"bob.corp.TREE.","kind":"arbor","rights":"r"}
    > {"type":"dir-quota","path":"/home/ann","quota":"500"}
    ? 0
    $ trovanctl report --by user --format json saved.xml
    > {"type":"trustee","path":"/data/finance","user":"Ann \"Q\" & Co – ü","id":"S-1-5-21-1-2-3-1104","kind":"ad","rights":"rw"}
    > {"type":"user-quota","user":"Ann \"Q\" & Co – ü","id":"S-1-5-21-1-2-3-1104","kind":"ad","quota":"2000"}
    > {"type":"trustee","path":"/","user":"admin.corp.TREE.","kind":"arbor","rights":"s"}
    > {"type":"trustee","path":"/data/finance/2026/q1","user":"bob.corp.TREE.","kind":"arbor","rights":"rwf"}
    > {"type":"trustee","path":"/data/x, \"y\" & <z>","user":"bob.corp.TREE.","kind":"arbor","rights":"r"}
    > {"type":"user-quota","user":"bob.corp.TREE.","kind":"arbor","quota":"1000"}
    > {"type":"trustee","path":"/data","user":"staff.corp.TREE.","kind":"arbor","rights":"rwcef"}
    > {"type":"trustee","path":"/data/finance/reports","user":"staff.corp.TREE.","kind":"arbor","rights":"r"}
    ? 0

The document can come on standard input.

    $ trovanctl report --kind dir-quota - < saved.xml
    > PATH           ENTRY      USER  KIND  RIGHTS  QUOTA
    > /data/finance  dir-quota  -     -     -       77
    > /home/ann      dir-quota  -     -     -       500
    ? 0

Filters: --path keeps a path and what lies below it --user
an Arbor name or an AD SID, --rights the holders of at least these letters (either case;
supervisor counts as every right), --kind a kind of user or of line. They combine.

    $ trovanctl report --path /data/finance saved.xml
    > PATH                   ENTRY      USER                                    KIND   RIGHTS  QUOTA
    > /data/finance          trustee    S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     rw      -
    > /data/finance          filter     -                                       -      rf      -
    > /data/finance          dir-quota  -                                       -      -       77
    > /data/finance/2026     filter     -                                       -      -       -
    > /data/finance/2026/q1  trustee    bob.corp.TREE.                          arbor  rwf     -
    > /data/finance/reports  trustee    staff.corp.TREE.                        arbor  r       -
    ? 0
    $ trovanctl report --user S-1-5-21-1-2-3-1104 --by user saved.xml
    > USER                                    KIND  ENTRY       PATH           RIGHTS  QUOTA
    > S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad    trustee     /data/finance  rw      -
    > S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad    user-quota  -              -       2000
    ? 0
    $ trovanctl report --user staff.corp.TREE. saved.xml
    > PATH                   ENTRY    USER              KIND   RIGHTS  QUOTA
    > /data                  trustee  staff.corp.TREE.  arbor  rwcef   -
    > /data/finance/reports  trustee  staff.corp.TREE.  arbor  r       -
    ? 0
    $ trovanctl report --rights W saved.xml
    > PATH                   ENTRY    USER                                    KIND   RIGHTS  QUOTA
    > /                      trustee  admin.corp.TREE.                        arbor  s       -
    > /data                  trustee  staff.corp.TREE.                        arbor  rwcef   -
    > /data/finance          trustee  S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     rw      -
    > /data/finance/2026/q1  trustee  bob.corp.TREE.                          arbor  rwf     -
    ? 0
    $ trovanctl report --rights rf --by user --format csv saved.xml | tr -d '\r'
    > path,entry,user,id,kind,rights,quota,from
    > /,trustee,admin.corp.TREE.,,arbor,s,,
    > /data/finance/2026/q1,trustee,bob.corp.TREE.,,arbor,rwf,,
    > /data,trustee,staff.corp.TREE.,,arbor,rwcef,,
    ? 0
    $ trovanctl report --kind ad saved.xml
    > PATH           ENTRY    USER                                    KIND  RIGHTS  QUOTA
    > /data/finance  trustee  S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad    rw      -
    ? 0
    $ trovanctl report --kind filter saved.xml
    > PATH                ENTRY   USER  KIND  RIGHTS    QUOTA
    > /data/finance       filter  -     -     rf        -
    > /data/finance/2026  filter  -     -     -         -
    > /data/open          filter  -     -     rwceafms  -
    ? 0
    $ trovanctl report --kind user-quota --by user saved.xml
    > USER                                    KIND   ENTRY       PATH  RIGHTS  QUOTA
    > S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     user-quota  -     -       2000
    > bob.corp.TREE.                          arbor  user-quota  -     -       1000
    ? 0
    $ trovanctl report --kind userQuota --by user saved.xml
    > USER                                    KIND   ENTRY       PATH  RIGHTS  QUOTA
    > S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)  ad     user-quota  -     -       2000
    > bob.corp.TREE.                          arbor  user-quota  -     -       1000
    ? 0
    $ trovanctl report --kind dirQuota --format csv saved.xml | tr -d '\r'
    > path,entry,user,id,kind,rights,quota,from
    > /data/finance,dir-quota,,,,,77,
    > /home/ann,dir-quota,,,,,500,
    ? 0
    $ trovanctl report --path /data --kind arbor --rights r --format json saved.xml
    > {"type":"trustee","path":"/data","user":"staff.corp.TREE.","kind":"arbor","rights":"rwcef"}
    > {"type":"trustee","path":"/data/finance/2026/q1","user":"bob.corp.TREE.","kind":"arbor","rights":"rwf"}
    > {"type":"trustee","path":"/data/finance/reports","user":"staff.corp.TREE.","kind":"arbor","rights":"r"}
    > {"type":"trustee","path":"/data/x, \"y\" & <z>","user":"bob.corp.TREE.","kind":"arbor","rights":"r"}
    ? 0
    $ trovanctl report --user nobody.corp.TREE. saved.xml
    > PATH  ENTRY  USER  KIND  RIGHTS  QUOTA
    ? 0

The page: one file holding its script, styles and data. The data is JSON inside a script
element with '<', '>' and '&' written as \u escapes, so that the page has exactly its two
script elements whatever the names hold; the path with angle brackets is in it only so. Nothing
in it loads from outside: no src, href or url( at all (grep counts none, status 1).

    $ trovanctl report --html page.html saved.xml && grep -c '<script' page.html && grep -c 'x, \\"y\\" \\u0026 \\u003cz\\u003e' page.html
    > 2
    > 1
    ? 0
    $ grep -c -e src= -e href= -e 'url(' page.html
    > 0
    ? 1

The data, in long flat arrays: users (name, SID, AD or not, user quota); every node's name
in one string joined by '/' (the root's is empty); each node's distance back to its parent;
the number of trustees a node, then those trustees as user and rights pairs; filters and
directory quotas as node and value pairs. Rights are numbers, a bit a right (read 1, write 2,
create 4, erase 8, access control 16, file scan 32, modify 64, supervisor 128).

    $ sed -n 's/^<script id="data" type="application\/json">\(.*\)<\/script>$/\1/p' page.html
    > {"users":[["admin.corp.TREE.","",0,null],["staff.corp.TREE.","",0,null],["Ann \"Q\" \u0026 Co – ü","S-1-5-21-1-2-3-1104",1,"2000"],["bob.corp.TREE.","",0,"1000"]],"names":"/data/finance/2026/q1/reports/open/x, \"y\" \u0026 \u003cz\u003e/home/ann","parents":[0,1,1,1,1,3,5,6,8,1],"counts":[1,1,1,0,1,1,0,1,0,0],"trustees":[0,128,1,47,2,3,3,35,1,1,3,1],"filters":[2,33,3,0,6,255],"quotas":[2,"77",9,"500"]}
    ? 0
    $ rm page.html
    ? 0

The live volume itself, vol:NAME, read through its info files as trovan save reads them: the
same report as of the saved document.

    $ trovanctl report vol:VOL1 > live.txt; echo $?; trovanctl report saved.xml | cmp - live.txt && echo same
    > 0
    > same
    ? 0
