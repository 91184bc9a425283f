The examples of the manual page trovan(8), each run as it is written there (doc/trovan.8;
the man page test checks that every example of the page is here). Paths of the volume show
the sandbox's own folder as $SANDBOX.

The volume VOL1, paired with the shadow volume VOL1_SHADOW, holds two directories and two
files, Arbor users in the trees CORP and NEWTREE and one AD user, trustees of both kinds, an
inherited rights filter, two user quotas and a directory quota.

    $ quillsim volume add VOL1 --shadow VOL1_SHADOW && quillsim dir add VOL1 /projects /home && quillsim file add VOL1 /projects/plan.txt /home/notes.txt
    ? 0
    $ quillsim user add bob.sales.CORP. && quillsim user add ann.sales.CORP. && quillsim user add bob.sales.NEWTREE. && quillsim user add ann.sales.NEWTREE. && quillsim user add bob.sales.CORP && quillsim user add-ad S-1-5-21-7-8-9-1104 carol
    ? 0
    $ quillsim trustee add VOL1 /projects bob.sales.CORP. rwf && quillsim trustee add VOL1 /home/notes.txt ann.sales.CORP. rwcemf && quillsim trustee add-ad VOL1 /projects S-1-5-21-7-8-9-1104 rf && quillsim irf set VOL1 /home rf
    ? 0
    $ quillsim quota user VOL1 bob.sales.CORP. 1048576 && quillsim quota user VOL1 carol 2097152 --ad && quillsim quota dir VOL1 /projects 5000000
    ? 0

Save all the metadata of volume VOL1: the document holds the three sections, copied from the
volume's information files.

    $ trovan save VOL1 >VOL1.xml
    ? 0
    $ cat VOL1.xml
    > <metadata>
    > <trusteeInfo>
    > <file><zid>564989681</zid><path><![CDATA[/home]]></path>
    > <inheritedRightsFilter value="RF"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > <file><zid>424036297</zid><path><![CDATA[/home/notes.txt]]></path>
    > <trustee><name>ann.sales.CORP.</name><id></id><rights value="RWCEFM"><read/><write/><create/><erase/><fileScan/><modify/></rights></trustee>
    > </file>
    > <file><zid>173539108</zid><path><![CDATA[/projects]]></path>
    > <trustee><name>bob.sales.CORP.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > <trustee type="adID"><name>carol</name><id>S-1-5-21-7-8-9-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1048576</quotaAmount><name>bob.sales.CORP.</name></user>
    > <user type="adID"><id>S-1-5-21-7-8-9-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2097152</quotaAmount><name>carol</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>173539108</zid><path>\projects</path><spaceUsed>0</spaceUsed><quotaAmount>5000000</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

Save only the user and directory quotas:

    $ trovan save VOL1 -m ud >quotas.xml
    ? 0
    $ cat quotas.xml
    > <metadata>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1048576</quotaAmount><name>bob.sales.CORP.</name></user>
    > <user type="adID"><id>S-1-5-21-7-8-9-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2097152</quotaAmount><name>carol</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>173539108</zid><path>\projects</path><spaceUsed>0</spaceUsed><quotaAmount>5000000</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

Save the trustees of the files below /projects (a path that exists on the volume):

    $ trovan save VOL1 -m t -p /projects >projects.xml
    ? 0
    $ cat projects.xml
    > <metadata>
    > <trusteeInfo>
    > <file><zid>173539108</zid><path><![CDATA[/projects]]></path>
    > <trustee><name>bob.sales.CORP.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > <trustee type="adID"><name>carol</name><id>S-1-5-21-7-8-9-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0

Save only the trustees and user quotas of AD users: the Arbor trustees and quotas are left
out, the files and their filters stay.

    $ trovan save VOL1 -m tu -u ad >ad.xml
    ? 0
    $ cat ad.xml
    > <metadata>
    > <trusteeInfo>
    > <file><zid>564989681</zid><path><![CDATA[/home]]></path>
    > <inheritedRightsFilter value="RF"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > <file><zid>424036297</zid><path><![CDATA[/home/notes.txt]]></path>
    > </file>
    > <file><zid>173539108</zid><path><![CDATA[/projects]]></path>
    > <trustee type="adID"><name>carol</name><id>S-1-5-21-7-8-9-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > <user type="adID"><id>S-1-5-21-7-8-9-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2097152</quotaAmount><name>carol</name></user>
    > </userInfo>
    > </metadata>
    ? 0

Remove invalid trustees, then save all the metadata: a trustee whose name is unresolved and an
AD trustee whose SID no longer resolves are removed first, and the document no longer has them.

    $ quillsim trustee add VOL1 /home Unknown\(21350\) rw && quillsim trustee add-ad VOL1 /home S-1-5-21-7-8-9-4242 r --name dave && quillsim log --clear
    ? 0
    $ trovan save VOL1 -m a >VOL1.xml
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/home</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee type="adID"><fileName>VOL1:/home</fileName><userID>S-1-5-21-7-8-9-4242</userID></removeTrustee></trustee></fileRequest>
    ? 0
    $ cat VOL1.xml
    > <metadata>
    > <trusteeInfo>
    > <file><zid>564989681</zid><path><![CDATA[/home]]></path>
    > <inheritedRightsFilter value="RF"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > <file><zid>424036297</zid><path><![CDATA[/home/notes.txt]]></path>
    > <trustee><name>ann.sales.CORP.</name><id></id><rights value="RWCEFM"><read/><write/><create/><erase/><fileScan/><modify/></rights></trustee>
    > </file>
    > <file><zid>173539108</zid><path><![CDATA[/projects]]></path>
    > <trustee><name>bob.sales.CORP.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > <trustee type="adID"><name>carol</name><id>S-1-5-21-7-8-9-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1048576</quotaAmount><name>bob.sales.CORP.</name></user>
    > <user type="adID"><id>S-1-5-21-7-8-9-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2097152</quotaAmount><name>carol</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>173539108</zid><path>\projects</path><spaceUsed>0</spaceUsed><quotaAmount>5000000</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

Restore all the metadata and show every change: one request per entry, each carrying
<gemelPath/> so that the shadow volume gets it too.

    $ quillsim log --clear
    ? 0
    $ trovan restore VOL1 -a <VOL1.xml
    > Restoring trustees
    > IRF mask [rf] added to $SANDBOX/mnt/VOL1/home.
    > Trustee ann.sales.CORP. added to $SANDBOX/mnt/VOL1/home/notes.txt with rights [rwcefm].
    > Trustee bob.sales.CORP. added to $SANDBOX/mnt/VOL1/projects with rights [rwf].
    > Trustee carol added to $SANDBOX/mnt/VOL1/projects with rights [rf].
    > Restoring trustees - completed
    > Restoring user quotas
    > User bob.sales.CORP. assigned a quota of 1048576 on volume VOL1.
    > User carol assigned a quota of 2097152 on volume VOL1.
    > Restoring user quotas - completed
    > Restoring directory quotas
    > Directory quota of 5000000 added to $SANDBOX/mnt/VOL1/projects.
    > Restoring directory quotas - completed
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><modifyInheritedRightsFilter><inheritedRightsFilter><read/><fileScan/></inheritedRightsFilter><fileName>$SANDBOX/mnt/VOL1/home</fileName><gemelPath/></modifyInheritedRightsFilter></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>ann.sales.CORP.</name><rights><read/><write/><create/><erase/><fileScan/><modify/></rights><fileName>$SANDBOX/mnt/VOL1/home/notes.txt</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>bob.sales.CORP.</name><rights><read/><write/><fileScan/></rights><fileName>$SANDBOX/mnt/VOL1/projects</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee type="adID"><userID>S-1-5-21-7-8-9-1104</userID><rights><read/><fileScan/></rights><fileName>$SANDBOX/mnt/VOL1/projects</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><quillRequest><userSpaceRestrictions><set><volumeName>VOL1</volumeName><userName>bob.sales.CORP.</userName><quota>1048576</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>
    > <virtualIO><datastream name="command"/></virtualIO><quillRequest><userSpaceRestrictions><set type="adID"><volumeName>VOL1</volumeName><userName>carol</userName><quota>2097152</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><directoryQuota><addQuota><fileName>$SANDBOX/mnt/VOL1/projects</fileName><gemelPath/><quotaAmount>5000000</quotaAmount></addQuota></directoryQuota></fileRequest>
    ? 0

Restore only the user quotas:

    $ quillsim log --clear
    ? 0
    $ trovan restore VOL1 -m u <quotas.xml
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><quillRequest><userSpaceRestrictions><set><volumeName>VOL1</volumeName><userName>bob.sales.CORP.</userName><quota>1048576</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>
    > <virtualIO><datastream name="command"/></virtualIO><quillRequest><userSpaceRestrictions><set type="adID"><volumeName>VOL1</volumeName><userName>carol</userName><quota>2097152</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>
    ? 0

Restore only the trustees of the paths that hold /projects: the filter is matched against the
full path from the mount point, so /home and its file are passed over.

    $ quillsim log --clear
    ? 0
    $ trovan restore VOL1 -m t -f /projects <VOL1.xml
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>bob.sales.CORP.</name><rights><read/><write/><fileScan/></rights><fileName>$SANDBOX/mnt/VOL1/projects</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee type="adID"><userID>S-1-5-21-7-8-9-1104</userID><rights><read/><fileScan/></rights><fileName>$SANDBOX/mnt/VOL1/projects</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    ? 0

Restore the Arbor trustees into the tree NEWTREE: the last component of every Arbor name is
replaced, the AD trustee is passed over, the filter is restored as it is.

    $ quillsim log --clear
    ? 0
    $ trovan restore VOL1 -m t -u arbor -t NEWTREE <VOL1.xml
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><modifyInheritedRightsFilter><inheritedRightsFilter><read/><fileScan/></inheritedRightsFilter><fileName>$SANDBOX/mnt/VOL1/home</fileName><gemelPath/></modifyInheritedRightsFilter></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>ann.sales.NEWTREE.</name><rights><read/><write/><create/><erase/><fileScan/><modify/></rights><fileName>$SANDBOX/mnt/VOL1/home/notes.txt</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>bob.sales.NEWTREE.</name><rights><read/><write/><fileScan/></rights><fileName>$SANDBOX/mnt/VOL1/projects</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    ? 0

Restore on the primary volume of a Gemel pair only: the requests carry no <gemelPath/>.

    $ quillsim log --clear
    ? 0
    $ trovan restore VOL1 -k <VOL1.xml
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><modifyInheritedRightsFilter><inheritedRightsFilter><read/><fileScan/></inheritedRightsFilter><fileName>$SANDBOX/mnt/VOL1/home</fileName></modifyInheritedRightsFilter></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>ann.sales.CORP.</name><rights><read/><write/><create/><erase/><fileScan/><modify/></rights><fileName>$SANDBOX/mnt/VOL1/home/notes.txt</fileName><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>bob.sales.CORP.</name><rights><read/><write/><fileScan/></rights><fileName>$SANDBOX/mnt/VOL1/projects</fileName><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee type="adID"><userID>S-1-5-21-7-8-9-1104</userID><rights><read/><fileScan/></rights><fileName>$SANDBOX/mnt/VOL1/projects</fileName><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><quillRequest><userSpaceRestrictions><set><volumeName>VOL1</volumeName><userName>bob.sales.CORP.</userName><quota>1048576</quota></set></userSpaceRestrictions></quillRequest>
    > <virtualIO><datastream name="command"/></virtualIO><quillRequest><userSpaceRestrictions><set type="adID"><volumeName>VOL1</volumeName><userName>carol</userName><quota>2097152</quota></set></userSpaceRestrictions></quillRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><directoryQuota><addQuota><fileName>$SANDBOX/mnt/VOL1/projects</fileName><quotaAmount>5000000</quotaAmount></addQuota></directoryQuota></fileRequest>
    ? 0

Restore the trustees of a legacy TRUSTEE.KXM report in the tree CORP: names are qualified
with the tree, paths lose their volume, OWNER lines are passed over with the usual notices.

    $ printf '%s\r\n' 'TRUSTEE.KXM' '"TRUSTEE","VOL1:\projects\plan.txt","x","bob.sales","RW"' '"IRM","VOL1:\projects","x","SRF","y"' '"OWNER","VOL1:\projects","x","bob.sales","y"' >trustees.txt
    ? 0
    $ quillsim log --clear
    ? 0
    $ trovan restore VOL1 -w -t CORP <trustees.txt
    2> Tokens ATTR and OWNER are not supported.
    2> Skipping tokens ATTR and OWNER.
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>bob.sales.CORP</name><rights><read/><write/></rights><fileName>$SANDBOX/mnt/VOL1/projects/plan.txt</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><modifyInheritedRightsFilter><inheritedRightsFilter><supervisor/><read/><fileScan/></inheritedRightsFilter><fileName>$SANDBOX/mnt/VOL1/projects</fileName><gemelPath/></modifyInheritedRightsFilter></trustees></fileRequest>
    ? 0

Save the trustees of an RXL volume from its RXL trustee file (its closing tag goes out without
its line end, as it always has):

    $ quillsim rxl trustee VOL1 /projects bob.sales.CORP RWF 5d1e9c3a-0000-4000-8000-00000000b0b0 && quillsim rxl irm VOL1 /home RF
    ? 0
    $ trovan save VOL1 -n -m t >rxl.xml
    ? 0
    $ cat rxl.xml
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/projects</path>
    > <trustee><name>bob.sales.CORP</name><id>5d1e9c3a-0000-4000-8000-00000000b0b0</id><rights value="rwf"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > <file>
    > <zid></zid><path>/home</path>
    > <inheritedRightsFilter value="rf"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > </trusteeInfo></metadata>
    ? 0

Restore the trustees into the RXL trustee file through rxlcon, one command per entry:

    $ trovan restore VOL1 -n -a <rxl.xml
    > Restoring trustees
    > Trustee bob.sales.CORP added to VOL1:/projects with rights [rwf].
    > Inherited rights filter added to VOL1:/home with rights [rf].
    > Restoring trustees - completed
    ? 0
    $ quillsim log --rxl
    > rxlcon volume VOL1
    > rxlcon rights add VOL1:/projects bob.sales.CORP rwf
    > rxlcon irm set VOL1:/home rf
    ? 0
