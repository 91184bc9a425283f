Restoring a legacy TRUSTEE.KXM report with -w: what the run does around the conversion. The
report is converted into a temporary document made from /tmp/tmp.XXXXXX, which the run removes
after the restore and leaves in /tmp when it stops before the restore. These checks list the
/tmp/tmp.?????? files before and after each run to find the one a run left.

    $ quillsim volume add VOL1 && quillsim file add VOL1 /HOME/JDOE/notes.txt
    ? 0

A report needs the tree name that qualifies its names: without -t the run stops before it reads
anything, and makes no temporary file.

    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? > before
    ? 0
    $ trovan restore VOL1 -w
    < TRUSTEE.KXM
    2> Provide Arbor tree name.
    ? 22
    $ trovan restore VOL1 --inputfilefromkestrel -r data
    < TRUSTEE.KXM
    2> Provide Arbor tree name.
    ? 22
    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? | comm -13 before - | wc -l
    > 0
    ? 0

Input whose first line does not begin with TRUSTEE.KXM is refused. The temporary file was made
before the conversion looked at the input; it stays in /tmp, empty.

    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? > before
    ? 0
    $ trovan restore VOL1 -w -t CORP
    < TRUSTEE.KX
    < "TRUSTEE","VOL1:\HOME\JDOE","x","JDOE.SALES","RWF"
    2> Invalid input file
    2> Unable to read input file.
    ? 22
    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? | comm -13 before - > left; wc -l < left; xargs -r cat < left | wc -c; xargs -r rm -f -- < left
    > 1
    > 0
    ? 0

Empty input is refused the same way.

    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? > before
    ? 0
    $ trovan restore VOL1 -w -t CORP < /dev/null
    2> Invalid input file
    2> Unable to read input file.
    ? 22
    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? | comm -13 before - > left; wc -l < left; xargs -r rm -f -- < left
    > 1
    ? 0

An unknown user type is noticed only after the conversion: the notices are printed, the run
stops with 255 and the converted document stays in /tmp. It shows the document the restore
would have read: one section per record, names qualified with the tree (except [Public]), paths
without their volume and with slashes, and no line break after the closing tag. ATTR and OWNER
lines write nothing; a line short of a value field is reported with its number, counted from
the line after the header and without the empty lines.

    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? > before
    ? 0
    $ trovan restore VOL1 -w -t CORP -u AD
    < TRUSTEE.KXM listing
    < "TRUSTEE","VOL1:\HOME\JDOE","x","JDOE.SALES","RWF"
    < "ATTR","VOL1:\HOME\JDOE","x","H",""
    <
    < "OWNER","VOL1:\HOME","x","ADMIN.SALES",""
    < "TRUSTEE","VOL1:\HOME","x","JDOE"
    < "IRM","HOME","x","SRF","y"
    < "DIRQUOTA","VOL1:\HOME","x","1048576","2048"
    < "USERQUOTA","VOL1:","x","[Public]","512000"
    2> Tokens ATTR and OWNER are not supported.
    2> Skipping tokens ATTR and OWNER.
    2> Invalid entry for "TRUSTEE in input file at line 4.
    2> Unknown user type : AD
    ? 255
    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? | comm -13 before - > left; wc -l < left; xargs -r cat < left; xargs -r rm -f -- < left
    > 1
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/HOME/JDOE</path>
    > <trustee><name>JDOE.SALES.CORP</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>HOME</path>
    > <inheritedRightsFilter value="SRF"><supervisor/><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > </trusteeInfo>
    > <dirInfo>
    > <directory><zid></zid><path>/HOME</path><spaceUsed>2048</spaceUsed><quotaAmount>1048576</quotaAmount></directory>
    > </dirInfo>
    > <userInfo>
    > <user><id></id><spaceUsed></spaceUsed><quotaAmount>512000</quotaAmount>
    > <name>[Public]</name>
    > <idNotFound><time><utc>0</utc><string>Invalid UTC Time</string></time><numberOfTimes>0</numberOfTimes></idNotFound></user>
    > </userInfo>
    >! </metadata>
    ? 0

With -r, paths that name no volume are placed under the prefix; paths that name their volume
lose the prefix with the volume.

    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? > before
    ? 0
    $ trovan restore VOL1 -w -t CORP -r data -u Arbor
    < TRUSTEE.KXM
    < "TRUSTEE","APPS\TOOLS","x","JDOE.SALES","R"
    < "TRUSTEE","VOL1:\APPS\TOOLS","x","JDOE.SALES","R"
    2> Tokens ATTR and OWNER are not supported.
    2> Skipping tokens ATTR and OWNER.
    2> Unknown user type : Arbor
    ? 255
    $ shopt -s nullglob; printf '%s\n' /tmp/tmp.?????? | comm -13 before - > left; xargs -r cat < left | grep '<path>'; xargs -r rm -f -- < left
    > <zid></zid><path>/data/APPS/TOOLS</path>
    > <zid></zid><path>/APPS/TOOLS</path>
    ? 0
