Restore in RXL mode (-n): trustees and inherited rights filters go to the file-sharing server's
console command rxlcon, one command per entry, and each is judged by the words "completed OK"
in what the command wrote on its error stream. Quota sections are not restored in this mode.

    $ quillsim volume add VOL1 && quillsim file add VOL1 '/docs/a&b.txt'
    ? 0

Without -a a successful restore prints nothing at all. The volume is checked first; a filter
becomes "irm set", a trustee "rights add" with its name in typeless form; the path is the
volume name, a colon and the document's path with its entities decoded; no rights at all are
passed as "none".

    $ trovan restore VOL1 -n < $DATA/data/rxl_document.xml
    ? 0
    $ quillsim log --rxl
    > rxlcon volume VOL1
    > rxlcon irm set VOL1:/docs rf
    > rxlcon rights add VOL1:/docs admin.corp.TREE. rwf
    > rxlcon rights add VOL1:/docs/a&b.txt bob.corp.TREE. none
    > rxlcon irm set VOL1:/docs/a&b.txt none
    ? 0

Nothing went to the admin command files: the user quota section is skipped.

    $ quillsim log
    ? 0

With -a every change is confirmed on standard output; an empty rights list shows as [].

    $ quillsim log --rxl --clear && trovan restore VOL1 -n -a < $DATA/data/rxl_document.xml
    > Restoring trustees
    > Inherited rights filter added to VOL1:/docs with rights [rf].
    > Trustee admin.corp.TREE. added to VOL1:/docs with rights [rwf].
    > Trustee bob.corp.TREE. added to VOL1:/docs/a&b.txt with rights [].
    > Inherited rights filter added to VOL1:/docs/a&b.txt with rights [].
    > Restoring trustees - completed
    ? 0

The server's RXL trustee file now holds the entries.

    $ quillsim rxl show VOL1 | grep -v object_guid
    > <?xml version="1.0" encoding="UTF-8"?>
    > <volume_trustees>
    > <inherited_rights_mask path="/docs">
    > <rights>RF</rights>
    > </inherited_rights_mask>
    > <trustee path="/docs">
    > <name>admin.corp.TREE.</name>
    > <rights>RWF</rights>
    > </trustee>
    > <trustee path="/docs/a&b.txt">
    > <name>bob.corp.TREE.</name>
    > <rights></rights>
    > </trustee>
    > <inherited_rights_mask path="/docs/a&b.txt">
    > <rights></rights>
    > </inherited_rights_mask>
    > </volume_trustees>
    ? 0

A volume the RXL server does not know ends the restore before any entry, with -1 (status 255).

    $ quillsim log --rxl --clear && trovan restore NOVOL -n -a < $DATA/data/rxl_document.xml
    > Restoring trustees
    2> RXL volume not found.
    ? 255
    $ quillsim log --rxl
    > rxlcon volume NOVOL
    ? 0

The same when the volume check itself fails: rxlcon exits non-zero, or dies by a signal.

    $ quillsim log --rxl --clear && quillsim fault rxlcon exit 3 && trovan restore VOL1 -n < $DATA/data/rxl_document.xml
    2> RXL volume not found.
    ? 255
    $ quillsim fault clear && quillsim fault rxlcon signal 9 && trovan restore VOL1 -n < $DATA/data/rxl_document.xml
    2> RXL volume not found.
    ? 255
    $ quillsim fault clear && quillsim log --rxl
    > rxlcon volume VOL1
    > rxlcon volume VOL1
    ? 0

For the entries themselves a small wrapper put first on PATH lets the volume check through and
turns the simulator's rxlcon fault on for every other command. Each entry that fails is reported
and the restore goes on; the entries' failures do not change the exit status. The command's
report is left in the temporary file /tmp/trovan<pid>, which the next command truncates.

    $ mkdir bin && printf '#!/bin/sh\nif [ "$1" = volume ]; then quillsim fault clear; else quillsim fault rxlcon $FAULT; fi\nexec %s "$@"\n' "$(command -v rxlcon)" > bin/rxlcon && chmod +x bin/rxlcon
    ? 0
    $ FAULT='exit 3' PATH=$PWD/bin:$PATH sh -c 'echo $$ > trovan.pid; exec trovan restore VOL1 -n -a' < $DATA/data/rxl_document.xml
    > Restoring trustees
    > Restoring trustees - completed
    2> Error adding inherited right filter "rf" to VOL1:/docs.
    2> Error adding trustee admin.corp.TREE. to VOL1:/docs with rights [rwf].
    2> Error adding trustee bob.corp.TREE. to VOL1:/docs/a&b.txt with rights [].
    2> Error adding inherited right filter "" to VOL1:/docs/a&b.txt.
    ? 0
    $ test -f /tmp/trovan$(cat trovan.pid) && rm /tmp/trovan$(cat trovan.pid)
    ? 0

An rxlcon that dies by a signal counts as a failed command in the same way.

    $ FAULT='signal 9' PATH=$PWD/bin:$PATH sh -c 'echo $$ > trovan.pid; exec trovan restore VOL1 -n' < $DATA/data/rxl_document.xml
    2> Error adding inherited right filter "rf" to VOL1:/docs.
    2> Error adding trustee admin.corp.TREE. to VOL1:/docs with rights [rwf].
    2> Error adding trustee bob.corp.TREE. to VOL1:/docs/a&b.txt with rights [].
    2> Error adding inherited right filter "" to VOL1:/docs/a&b.txt.
    ? 0
    $ test -f /tmp/trovan$(cat trovan.pid) && rm /tmp/trovan$(cat trovan.pid)
    ? 0

An rxlcon that exits 0 without saying "completed OK" has not confirmed the change: the filter
and the trustee have messages of their own, and the temporary file is removed.

    $ FAULT=silent PATH=$PWD/bin:$PATH sh -c 'echo $$ > trovan.pid; exec trovan restore VOL1 -n -a' < $DATA/data/rxl_document.xml
    > Restoring trustees
    > Restoring trustees - completed
    2> Error adding IRF VOL1:/docs with rights [rf].
    2> Error adding trustee admin.corp.TREE. to VOL1:/docs with rights [rwf].
    2> Error adding trustee bob.corp.TREE. to VOL1:/docs/a&b.txt with rights [].
    2> Error adding IRF VOL1:/docs/a&b.txt with rights [].
    ? 0
    $ test -e /tmp/trovan$(cat trovan.pid)
    ? 1
    $ quillsim fault clear
    ? 0

An AD trustee is not for the console: in RXL mode it takes the admin request path, but no
command file is open, so its request goes to descriptor 0, the document itself, which is open
for reading only. The failure is reported and the restore goes on.

    $ printf '<metadata><trusteeInfo><file><path>/docs</path><trustee type="adID"><name>ann</name><id>S-1-5-21-1</id><rights><read/></rights></trustee><trustee><name>bob.corp.TREE.</name><rights><read/></rights></trustee></file></trusteeInfo></metadata>' > ad.xml
    ? 0
    $ quillsim log --rxl --clear && trovan restore VOL1 -n -a < ad.xml
    > Restoring trustees
    > Trustee bob.corp.TREE. added to VOL1:/docs with rights [r].
    > Restoring trustees - completed
    2> Error sending the request to the admin file system.  err=Bad file descriptor
    ? 0
    $ quillsim log --rxl; quillsim log; cat ad.xml | head -c 10
    > rxlcon volume VOL1
    > rxlcon rights add VOL1:/docs bob.corp.TREE. r
    >! <metadata>
    ? 0
