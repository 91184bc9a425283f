A run ended by SIGINT, SIGTERM or SIGHUP first removes its temporary files: the converted
document of -w (made from /tmp/tmp.XXXXXX) and the console's report file /tmp/trovan<pid> of -n.
It then ends by the same signal, so the caller sees the status it always saw (143 for SIGTERM).

    $ quillsim volume add VOL1 && quillsim file add VOL1 /HOME/JDOE/notes.txt /docs/a.txt
    ? 0

SIGTERM while the legacy report is being converted: standard input is a FIFO that the test
keeps open, so the run waits for more of the report, its temporary document made and begun.
The simulator notes each file a program makes in /tmp (sim/tmpfiles.log).

    $ mkfifo report && { trovan restore VOL1 -w -t CORP < report 2> err & pid=$!; exec 3> report; echo 'TRUSTEE.KXM' >&3; echo '"TRUSTEE","VOL1:\HOME\JDOE","x","JDOE.SALES","RWF"' >&3; for i in $(seq 600); do grep -q Skipping err && break; sleep 0.1; done; kill -TERM $pid; wait $pid; echo "status $?"; exec 3>&-; cat err; }
    > status 143
    > Tokens ATTR and OWNER are not supported.
    > Skipping tokens ATTR and OWNER.
    ? 0
    $ sed -n 's/^trovan\[[0-9]*\] //p' sim/tmpfiles.log | sort -u > made; wc -l < made; for f in $(cat made); do test -e $f && echo "$f left"; done
    > 1
    ? 1
    $ quillsim log --leaks
    ? 0

SIGTERM while a console command of -n runs: a wrapper first on PATH lets the volume check
through and holds every other command on a FIFO, after trovan has made its report file.

    $ mkdir bin && mkfifo gate && printf '#!/bin/sh\nif [ "$1" != volume ]; then echo $$ > held; read line < gate; fi\nexec %s "$@"\n' "$(command -v rxlcon)" > bin/rxlcon && chmod +x bin/rxlcon
    ? 0
    $ PATH=$PWD/bin:$PATH; trovan restore VOL1 -n < $DATA/data/rxl_document.xml & pid=$!; for i in $(seq 600); do test -s held && break; sleep 0.1; done; test -f /tmp/trovan$pid && echo 'report file made'; kill -TERM $pid; wait $pid; echo "status $?"; test -e /tmp/trovan$pid; echo "left $?"; held=$(cat held); echo > gate; for i in $(seq 600); do kill -0 $held 2> /dev/null || break; sleep 0.1; done
    > report file made
    > status 143
    > left 1
    ? 0
    $ quillsim log --rxl
    > rxlcon volume VOL1
    > rxlcon irm set VOL1:/docs rf
    ? 0

A run started with standard output or standard error closed opens /dev/null in their place
first, so no command file can take descriptor 1 or 2 and receive the run's lines. The simulator
answers the requests written to a command file; any other bytes that reached one (lines the C
library writes out of its stream buffers) would be left in the sandbox's file itself, which
therefore stays empty. With standard output closed, the -a lines and the -d trace go nowhere.

    $ { echo '<metadata><trusteeInfo>'; for i in $(seq 1 100); do echo '<file><path>/docs/a.txt</path><trustee><name>bob.corp.TREE.</name><rights><read/></rights></trustee></file>'; done; echo '</trusteeInfo><userInfo><user><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user></userInfo><dirInfo><directory><path>/docs</path><quotaAmount>2000</quotaAmount></directory></dirInfo></metadata>'; } > doc.xml && quillsim user add bob.corp.TREE. && quillsim log --clear
    ? 0
    $ trovan restore VOL1 -a -d < doc.xml >&-
    ? 0
    $ quillsim log | uniq -c
    >     100 <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/></rights><fileName>$SANDBOX/mnt/VOL1/docs/a.txt</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    >       1 <virtualIO><datastream name="command"/></virtualIO><quillRequest><userSpaceRestrictions><set><volumeName>VOL1</volumeName><userName>bob.corp.TREE.</userName><quota>1000</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>
    >       1 <virtualIO><datastream name="command"/></virtualIO><fileRequest><directoryQuota><addQuota><fileName>$SANDBOX/mnt/VOL1/docs</fileName><gemelPath/><quotaAmount>2000</quotaAmount></addQuota></directoryQuota></fileRequest>
    ? 0
    $ cat _admin/Manage_QUILL/files.cmd _admin/Manage_QUILL/manage.cmd | wc -c
    > 0
    ? 0

With standard error closed, the messages of refused requests go nowhere either.

    $ quillsim log --clear && quillsim fault refuse '' 22 'refused'
    ? 0
    $ trovan restore VOL1 -a < doc.xml 2>&-
    > Restoring trustees
    > Restoring trustees - completed
    > Restoring user quotas
    > Restoring user quotas - completed
    > Restoring directory quotas
    > Restoring directory quotas - completed
    ? 0
    $ quillsim fault clear && quillsim log | cut -c 52-64 | uniq -c; cat _admin/Manage_QUILL/files.cmd _admin/Manage_QUILL/manage.cmd | wc -c
    >     100 <fileRequest>
    >       1 <quillRequest
    >       1 <fileRequest>
    > 0
    ? 0

A closed standard input reads as an empty one: a restore finds no document.

    $ trovan restore VOL1 <&-
    2> Unrecognized file contents.  Unable to start the restore
    ? 255

A console command inherits nothing but its three standard descriptors, not even the converted
document of -w that the run reads. The simulator's rxlcon lists what it found open as it
started (QUILLSIM_RXLCON_FDS).

    $ QUILLSIM_RXLCON_FDS=$PWD/fds trovan restore VOL1 -n -w -t CORP < $DATA/data/legacy_report.txt
    2> Tokens ATTR and OWNER are not supported.
    2> Skipping tokens ATTR and OWNER.
    2> Invalid access right : X
    2> Invalid entry for "TRUSTEE in input file at line 4.
    2> Invalid entry for "IRM in input file at line 9.
    ? 0
    $ sort -u fds
    > descriptors: 0 1 2
    ? 0
