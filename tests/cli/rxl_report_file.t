In RXL mode (-n) each console command's report is caught in the file /tmp/trovan<pid>, named by
trovan's process id. Whatever is found under that name when a command starts (a FIFO, a link to
a forged report, a link to a file that does not exist, a second name of another user's file) is
removed first, and the report file is made afresh, for trovan's user alone; it is read back only
when it is still that regular file. So each run below ends promptly, applies every entry once
and reports only what the console confirmed, and what was planted outside trovan's own name is
left as it was.

A small wrapper plants something at /tmp/trovan$$ and then runs trovan as that same process, so
that the planted name is the one trovan will use. It keeps the process id in trovan.pid; every
command below removes what it planted.

    $ quillsim volume add VOL1 && quillsim file add VOL1 '/docs/a&b.txt'
    ? 0
    $ printf '%s\n' '#!/bin/sh' 'name=/tmp/trovan$$' 'echo $$ > trovan.pid' 'case $1 in' '  fifo) mkfifo $name ;;' '  link) ln -s $PWD/forged $name ;;' '  dangling) ln -s $PWD/nowhere $name ;;' '  hardlink) ln $PWD/victim $name ;;' '  directory) mkdir $name ;;' 'esac' 'shift' 'exec trovan "$@"' > plant && chmod +x plant
    ? 0

A FIFO: the restore neither waits on it nor reads it; it is replaced by the report file.

    $ timeout 60 ./plant fifo restore VOL1 -n -a < $DATA/data/rxl_document.xml; status=$?; rm -f /tmp/trovan$(cat trovan.pid); exit $status
    > Restoring trustees
    > Inherited rights filter added to VOL1:/docs with rights [rf].
    > Trustee admin.corp.TREE. added to VOL1:/docs with rights [rwf].
    > Trustee bob.corp.TREE. added to VOL1:/docs/a&b.txt with rights [].
    > Inherited rights filter added to VOL1:/docs/a&b.txt with rights [].
    > Restoring trustees - completed
    ? 0
    $ quillsim log --rxl && quillsim log --rxl --clear
    > rxlcon volume VOL1
    > rxlcon irm set VOL1:/docs rf
    > rxlcon rights add VOL1:/docs admin.corp.TREE. rwf
    > rxlcon rights add VOL1:/docs/a&b.txt bob.corp.TREE. none
    > rxlcon irm set VOL1:/docs/a&b.txt none
    ? 0

A symbolic link to a file that says "completed OK": no success is taken from it. Here the
console itself fails every change (the simulator's rxlcon fault, let through for the volume
check by a wrapper first on PATH), so every entry is reported as failed and nothing is
confirmed; the forged file is neither read as a report nor changed.

    $ mkdir bin && printf '#!/bin/sh\nif [ "$1" = volume ]; then quillsim fault clear; else quillsim fault rxlcon silent; fi\nexec %s "$@"\n' "$(command -v rxlcon)" > bin/rxlcon && chmod +x bin/rxlcon
    ? 0
    $ echo 'rights add: completed OK' > forged && PATH=$PWD/bin:$PATH timeout 60 ./plant link restore VOL1 -n -a < $DATA/data/rxl_document.xml; status=$?; rm -f /tmp/trovan$(cat trovan.pid); quillsim fault clear; exit $status
    > Restoring trustees
    > Restoring trustees - completed
    2> Error adding IRF VOL1:/docs with rights [rf].
    2> Error adding trustee admin.corp.TREE. to VOL1:/docs with rights [rwf].
    2> Error adding trustee bob.corp.TREE. to VOL1:/docs/a&b.txt with rights [].
    2> Error adding IRF VOL1:/docs/a&b.txt with rights [].
    ? 0
    $ cat forged; test -L /tmp/trovan$(cat trovan.pid) || test -e /tmp/trovan$(cat trovan.pid)
    > rights add: completed OK
    ? 1
    $ quillsim log --rxl && quillsim log --rxl --clear
    > rxlcon volume VOL1
    > rxlcon irm set VOL1:/docs rf
    > rxlcon rights add VOL1:/docs admin.corp.TREE. rwf
    > rxlcon rights add VOL1:/docs/a&b.txt bob.corp.TREE. none
    > rxlcon irm set VOL1:/docs/a&b.txt none
    ? 0

The same link with a console that works: every change is made by the console and confirmed by
its own report.

    $ timeout 60 ./plant link restore VOL1 -n -a < $DATA/data/rxl_document.xml; status=$?; rm -f /tmp/trovan$(cat trovan.pid); exit $status
    > Restoring trustees
    > Inherited rights filter added to VOL1:/docs with rights [rf].
    > Trustee admin.corp.TREE. added to VOL1:/docs with rights [rwf].
    > Trustee bob.corp.TREE. added to VOL1:/docs/a&b.txt with rights [].
    > Inherited rights filter added to VOL1:/docs/a&b.txt with rights [].
    > Restoring trustees - completed
    ? 0
    $ cat forged; quillsim log --rxl | grep -c ' VOL1:'; quillsim log --rxl --clear
    > rights add: completed OK
    > 4
    ? 0

A link to a file that does not exist: the link is replaced, nothing is made where it pointed,
and each of 30 trustees is added by exactly one `rxlcon rights add`.

    $ { echo '<metadata><trusteeInfo>'; for i in $(seq 1 30); do echo "<file><path>/docs/f$i</path><trustee><name>u$i.corp.TREE.</name><rights><read/></rights></trustee></file>"; done; echo '</trusteeInfo></metadata>'; } > thirty.xml
    ? 0
    $ timeout 60 ./plant dangling restore VOL1 -n < thirty.xml; status=$?; rm -f /tmp/trovan$(cat trovan.pid); exit $status
    ? 0
    $ test -e nowhere
    ? 1
    $ quillsim log --rxl | sort | uniq -c | awk '{ print $1 }' | sort | uniq -c; quillsim log --rxl --clear
    >      31 1
    ? 0
    $ quillsim rxl show VOL1 | grep -c '<trustee path="/docs/f'
    > 30
    ? 0

A second name (a hard link) of another user's file: that file is neither emptied nor written,
keeps its owner, and its name at /tmp/trovan<pid> is gone, so its owner cannot read trovan's
reports through it.

    $ echo 'not for trovan' > victim && chown nobody victim && timeout 60 ./plant hardlink restore VOL1 -n < $DATA/data/rxl_document.xml; status=$?; rm -f /tmp/trovan$(cat trovan.pid); exit $status
    ? 0
    $ cat victim; stat -c '%U %h' victim
    > not for trovan
    > nobody 1
    ? 0
    $ quillsim log --rxl | grep -c ' VOL1:'; quillsim log --rxl --clear
    > 4
    ? 0

A name that cannot be cleared (a directory, which unlink does not remove): the report file
cannot be made, and the run takes its long-standing path for that case. The child reports
"Error 17(File exists)opening temp file" (without a line end) and, instead of running rxlcon,
goes on with the rest of the document as a copy of trovan, whose own commands use its own
report file; the parent then takes the entry as failed, since what it finds under the name is
no report, and goes on with what it had read of the document. So the first entry is never
applied and later ones may be applied more than once, each change still made by rxlcon and
reported by the run that made it. Nothing is confirmed that rxlcon did not report.

    $ timeout 60 ./plant directory restore VOL1 -n -a < $DATA/data/rxl_document.xml; status=$?; rmdir /tmp/trovan$(cat trovan.pid); exit $status
    > Restoring trustees
    > Trustee admin.corp.TREE. added to VOL1:/docs with rights [rwf].
    > Trustee bob.corp.TREE. added to VOL1:/docs/a&b.txt with rights [].
    > Inherited rights filter added to VOL1:/docs/a&b.txt with rights [].
    > Restoring trustees - completed
    > Trustee bob.corp.TREE. added to VOL1:/docs/a&b.txt with rights [].
    > Inherited rights filter added to VOL1:/docs/a&b.txt with rights [].
    > Restoring trustees - completed
    > Inherited rights filter added to VOL1:/docs/a&b.txt with rights [].
    > Restoring trustees - completed
    > Restoring trustees - completed
    > Restoring trustees - completed
    2> Error 17(File exists)opening temp fileError adding inherited right filter "rf" to VOL1:/docs.
    2> Error adding IRF VOL1:/docs with rights [rf].
    2> Error 17(File exists)opening temp fileError adding trustee admin.corp.TREE. to VOL1:/docs with rights [rwf].
    2> Error adding trustee admin.corp.TREE. to VOL1:/docs with rights [rwf].
    2> Error 17(File exists)opening temp fileError adding trustee bob.corp.TREE. to VOL1:/docs/a&b.txt with rights [].
    2> Error adding trustee bob.corp.TREE. to VOL1:/docs/a&b.txt with rights [].
    2> Error 17(File exists)opening temp fileError adding inherited right filter "" to VOL1:/docs/a&b.txt.
    2> Error adding IRF VOL1:/docs/a&b.txt with rights [].
    ? 0
    $ quillsim log --rxl | sort | uniq -c
    >       3 rxlcon irm set VOL1:/docs/a&b.txt none
    >       1 rxlcon rights add VOL1:/docs admin.corp.TREE. rwf
    >       2 rxlcon rights add VOL1:/docs/a&b.txt bob.corp.TREE. none
    >       1 rxlcon volume VOL1
    ? 0
