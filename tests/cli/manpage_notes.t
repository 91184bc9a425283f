The NOTES of the manual page trovan(8), each example run as it is written there (doc/trovan.8;
the man page test checks that every example of its NOTES is here). Paths of the volume show the
sandbox's own folder as $SANDBOX.

The volume VOL1: /projects with a file below it, /projects10 beside it, /home with a file.

    $ quillsim volume add VOL1 && quillsim dir add VOL1 /projects /projects10 /home && quillsim file add VOL1 /projects/plan.txt /home/notes.txt
    ? 0
    $ quillsim user add bob.sales.CORP. && quillsim user add ann.sales.CORP. && quillsim user add-ad S-1-5-21-7-8-9-1104 carol
    ? 0
    $ quillsim trustee add VOL1 /projects bob.sales.CORP. rwf && quillsim trustee add VOL1 /projects/plan.txt bob.sales.CORP. r && quillsim trustee add VOL1 /projects10 bob.sales.CORP. rf && quillsim trustee add VOL1 /home ann.sales.CORP. rf
    ? 0

## The -f expression sees the mount point

An expression anchored at the start of the path alone matches nothing: the path it sees begins
with the mount point. The restore says nothing of it.

    $ trovan save VOL1 >VOL1.xml && trovan restore VOL1 -m t -a -f '^/projects' <VOL1.xml
    > Restoring trustees
    > Restoring trustees - completed
    ? 0

Unanchored, /projects also matches /projects10.

    $ trovan restore VOL1 -m t -a -f /projects <VOL1.xml
    > Restoring trustees
    > Trustee bob.sales.CORP. added to $SANDBOX/mnt/VOL1/projects with rights [rwf].
    > Trustee bob.sales.CORP. added to $SANDBOX/mnt/VOL1/projects/plan.txt with rights [r].
    > Trustee bob.sales.CORP. added to $SANDBOX/mnt/VOL1/projects10 with rights [rf].
    > Restoring trustees - completed
    ? 0

Anchored on the mount point taken from the mount table: /projects and what is below it, nothing
else.

    $ trovan restore VOL1 -m t -a -f "^$(awk '$4 ~ /(^|,)name=VOL1(,|$)/ { print $2 }' /etc/mtab)/projects\(/\|$\)" <VOL1.xml
    > Restoring trustees
    > Trustee bob.sales.CORP. added to $SANDBOX/mnt/VOL1/projects with rights [rwf].
    > Trustee bob.sales.CORP. added to $SANDBOX/mnt/VOL1/projects/plan.txt with rights [r].
    > Restoring trustees - completed
    ? 0

## What save -m a and -m r remove

Two invalid trustees: one the file system shows as Unknown(21350), and an AD trustee whose SID
no longer resolves.

    $ quillsim trustee add VOL1 /home/notes.txt 'Unknown(21350)' r && quillsim trustee add-ad VOL1 /home S-1-5-21-7-8-9-1105 rf --name gone && quillsim log --clear
    ? 0

Saved first without r, they are kept in before.xml; -m a then removes them, prints nothing, and
they are in no document it writes.

    $ trovan save VOL1 >before.xml
    ? 0
    $ trovan save VOL1 -m a >VOL1.xml
    ? 0
    $ grep -c 'Unknown(21350)\|S-1-5-21-7-8-9-1105' before.xml VOL1.xml
    > before.xml:2
    > VOL1.xml:0
    ? 0
    $ quillsim log --root-as '$ROOT'
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee type="adID"><fileName>VOL1:/home</fileName><userID>S-1-5-21-7-8-9-1105</userID></removeTrustee></trustee></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/home/notes.txt</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    ? 0

## Restore adds and never removes

A trustee added after a save stays through a restore of the saved document; a save shows it.

    $ trovan save VOL1 -m t >then.xml && quillsim trustee add VOL1 /projects ann.sales.CORP. r && trovan restore VOL1 <then.xml
    ? 0
    $ trovan save VOL1 -m t >now.xml
    ? 0
    $ diff then.xml now.xml
    > 7a8
    > > <trustee><name>ann.sales.CORP.</name><id></id><rights value="R"><read/></rights></trustee>
    ? 1

## The legacy report, field by field

The sample report, taken from the rendered page itself (groff runs outside the simulator: it
needs nothing of it), restored into the tree CORP.

    $ env -u LD_PRELOAD groff -man -Tascii -P-cbou "$DATA/../../doc/trovan.8" 2>/dev/null | sed -n '/^ *TRUSTEE.KXM report of VOL1$/,/ANN.SALES/s/^ *//p' >report.txt && cat report.txt
    > TRUSTEE.KXM report of VOL1
    > "TRUSTEE","VOL1:\projects","x","BOB.SALES","RWF"
    > "TRUSTEE","VOL1:\home\notes.txt","x","[Public]","R"
    > "IRM","VOL1:\home","x","RF","x"
    > "DIRQUOTA","VOL1:\projects","x","5000000","0"
    > "USERQUOTA","VOL1:","x","BOB.SALES","1048576"
    > "TRUSTEE","VOL1:\home","x","ANN.SALES"
    ? 0
    $ quillsim user add BOB.SALES.CORP && quillsim user add '[Public]' && quillsim log --clear
    ? 0
    $ trovan restore VOL1 -w -t CORP -a <report.txt
    > Restoring trustees
    > Trustee BOB.SALES.CORP added to $SANDBOX/mnt/VOL1/projects with rights [rwf].
    > Restoring trustees - completed
    > Restoring trustees
    > Trustee [Public] added to $SANDBOX/mnt/VOL1/home/notes.txt with rights [r].
    > Restoring trustees - completed
    > Restoring trustees
    > IRF mask [rf] added to $SANDBOX/mnt/VOL1/home.
    > Restoring trustees - completed
    > Restoring directory quotas
    > Directory quota of 5000000 added to $SANDBOX/mnt/VOL1/projects.
    > Restoring directory quotas - completed
    > Restoring user quotas
    > User BOB.SALES.CORP assigned a quota of 1048576 on volume VOL1.
    > Restoring user quotas - completed
    2> Tokens ATTR and OWNER are not supported.
    2> Skipping tokens ATTR and OWNER.
    2> Invalid entry for "TRUSTEE in input file at line 6.
    ? 0

## How -w counts lines

The header and empty lines are not counted: with an empty line and an ATTR line before it, the
same incomplete line is line 7 of the records (line 9 of the file).

    $ { head -1 report.txt; echo; echo '"ATTR","VOL1:\home","x","H",""'; tail -n +2 report.txt; } >spaced.txt && grep -n ANN.SALES spaced.txt
    > 9:"TRUSTEE","VOL1:\home","x","ANN.SALES"
    ? 0
    $ trovan restore VOL1 -w -t CORP <spaced.txt
    2> Tokens ATTR and OWNER are not supported.
    2> Skipping tokens ATTR and OWNER.
    2> Invalid entry for "TRUSTEE in input file at line 7.
    ? 0
