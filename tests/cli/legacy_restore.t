Restoring a legacy TRUSTEE.KXM report end to end: the report (CR LF line ends) is converted into
a temporary document, the document is restored as a saved one would be, and the temporary file
is gone afterwards. Paths printed by trovan hold the sandbox's mount point; `masked` shows it as
SANDBOX.

    $ printf '%s\n' '"$@" > out 2> err; status=$?' 'sed "s|$SANDBOX|SANDBOX|g" out' 'sed "s|$SANDBOX|SANDBOX|g" err >&2' 'exit $status' > masked
    ? 0
    $ quillsim volume add VOL1 && quillsim dir add VOL1 /HOME/JDOE/ /SHARED/ /APPS/TOOLS/ /data/APPS/TOOLS/
    ? 0
    $ quillsim user add JDOE.SALES.CORP && quillsim user add [Public]
    ? 0

The report holds every kind of line. The conversion reports its two notices, the letter X that
is no right, and the line short of a value field (line 4: the header and the empty line are not
counted). ATTR and OWNER lines are passed over. Names take the tree, except [Public]. A path
that names no volume stays relative without -r, so it lands right after the mount point and the
file system refuses it; the restore goes on.

    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? > before
    ? 0
    $ bash masked trovan restore VOL1 -w -t CORP -a
    <@ data/legacy_report.txt
    > Restoring trustees
    > Trustee JDOE.SALES.CORP added to SANDBOX/mnt/VOL1/HOME/JDOE with rights [rwf].
    > Restoring trustees - completed
    > Restoring trustees
    > IRF mask [srf] added to SANDBOX/mnt/VOL1/HOME.
    > Restoring trustees - completed
    > Restoring directory quotas
    > Directory quota of 1048576 added to SANDBOX/mnt/VOL1/SHARED.
    > Restoring directory quotas - completed
    > Restoring user quotas
    > User JDOE.SALES.CORP assigned a quota of 512000 on volume VOL1.
    > Restoring user quotas - completed
    > Restoring trustees
    > Restoring trustees - completed
    2> Tokens ATTR and OWNER are not supported.
    2> Skipping tokens ATTR and OWNER.
    2> Invalid access right : X
    2> Invalid entry for "TRUSTEE in input file at line 4.
    2> Invalid entry for "IRM in input file at line 9.
    2> Error adding trustee [Public] to SANDBOX/mnt/VOL1APPS/TOOLS: volume not found(SANDBOX/mnt/VOL1APPS/TOOLS)
    ? 0
    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? | comm -13 before - | wc -l
    > 0
    ? 0

The requests sent, one per record, in the order of the report.

    $ quillsim log | sed "s|$SANDBOX|SANDBOX|g"
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>JDOE.SALES.CORP</name><rights><read/><write/><fileScan/></rights><fileName>SANDBOX/mnt/VOL1/HOME/JDOE</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><modifyInheritedRightsFilter><inheritedRightsFilter><supervisor/><read/><fileScan/></inheritedRightsFilter><fileName>SANDBOX/mnt/VOL1/HOME</fileName><gemelPath/></modifyInheritedRightsFilter></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><directoryQuota><addQuota><fileName>SANDBOX/mnt/VOL1/SHARED</fileName><gemelPath/><quotaAmount>1048576</quotaAmount></addQuota></directoryQuota></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><quillRequest><userSpaceRestrictions><set><volumeName>VOL1</volumeName><userName>JDOE.SALES.CORP</userName><quota>512000</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>[Public]</name><rights><read/><fileScan/></rights><fileName>SANDBOX/mnt/VOL1APPS/TOOLS</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    ? 0

With -r data, the path that names no volume goes under /data; the paths that name their volume
lose the prefix with the volume. The run takes -t only for the conversion: the restore itself
runs without a tree override, and -k still keeps the requests off the shadow volume.

    $ quillsim log --clear
    ? 0
    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? > before
    ? 0
    $ bash masked trovan restore VOL1 -w -t CORP -r data -k -m t
    <@ data/legacy_report.txt
    2> Tokens ATTR and OWNER are not supported.
    2> Skipping tokens ATTR and OWNER.
    2> Invalid access right : X
    2> Invalid entry for "TRUSTEE in input file at line 4.
    2> Invalid entry for "IRM in input file at line 9.
    ? 0
    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? | comm -13 before - | wc -l
    > 0
    ? 0
    $ quillsim log | sed "s|$SANDBOX|SANDBOX|g"
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>JDOE.SALES.CORP</name><rights><read/><write/><fileScan/></rights><fileName>SANDBOX/mnt/VOL1/HOME/JDOE</fileName><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><modifyInheritedRightsFilter><inheritedRightsFilter><supervisor/><read/><fileScan/></inheritedRightsFilter><fileName>SANDBOX/mnt/VOL1/HOME</fileName></modifyInheritedRightsFilter></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>[Public]</name><rights><read/><fileScan/></rights><fileName>SANDBOX/mnt/VOL1/data/APPS/TOOLS</fileName><symLink/></addTrustee></trustees></fileRequest>
    ? 0
