Which saves remove invalid trustees. The letter r removes them only when the trustees come from
the info file and no quota letter comes with it, unless the trustee letter does too: "r", "rt"
and "a" remove; "ru" and "rd" do not; with -n (trustees from the RXL trustee file) "rt" and "a"
do not either, while "r" alone still does and still writes the info file's trustees.

A volume with one invalid trustee, a user quota, a directory quota and an RXL trustee file.

    $ quillsim volume add VOL1
    ? 0
    $ quillsim file add VOL1 /docs/a.txt
    ? 0
    $ quillsim user add bob.corp.TREE.
    ? 0
    $ quillsim trustee add VOL1 /docs/a.txt bob.corp.TREE. rf
    ? 0
    $ quillsim trustee add VOL1 /docs/a.txt 'Unknown(21350)' rf
    ? 0
    $ quillsim quota user VOL1 bob.corp.TREE. 1000
    ? 0
    $ quillsim quota dir VOL1 /docs 5000
    ? 0
    $ quillsim rxl trustee VOL1 /docs/a.txt bob.corp.TREE. RF 175402c6-687f-0c90-3bd4-264a284a3efa
    ? 0

No removal: the default mask, "t", "ru" and "rd", with and without -n. ("rt" and "a" with -n,
which take the trustees from the RXL trustee file, are in removal_masks_rxl.t.)

    $ trovan save VOL1 >/dev/null && trovan save VOL1 -m t >/dev/null && quillsim log
    ? 0
    $ trovan save VOL1 -m ru
    > <metadata>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > </userInfo>
    > </metadata>
    ? 0
    $ trovan save VOL1 -m ru -n >/dev/null && quillsim log
    ? 0
    $ trovan save VOL1 -m rd
    > <metadata>
    > <dirInfo>
    > <directory><zid>601066489</zid><path>\docs</path><spaceUsed>0</spaceUsed><quotaAmount>5000</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0
    $ trovan save VOL1 -m rd -n >/dev/null && quillsim log
    ? 0

"rt" removes, then writes the trustees.

    $ trovan save VOL1 -m rt
    > <metadata>
    > <trusteeInfo>
    > <file><zid>857901855</zid><path><![CDATA[/docs/a.txt]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/docs/a.txt</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    ? 0

"r" alone removes and writes the trustee section all the same, with or without -n.

    $ quillsim log --clear && quillsim trustee add VOL1 /docs/a.txt 'Unknown(21350)' rf
    ? 0
    $ trovan save VOL1 -m r
    > <metadata>
    > <trusteeInfo>
    > <file><zid>857901855</zid><path><![CDATA[/docs/a.txt]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/docs/a.txt</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    ? 0
    $ quillsim log --clear && quillsim trustee add VOL1 /docs/a.txt 'Unknown(21350)' rf
    ? 0
    $ trovan save VOL1 -m r -n
    > <metadata>
    > <trusteeInfo>
    > <file><zid>857901855</zid><path><![CDATA[/docs/a.txt]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/docs/a.txt</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    ? 0

"a" removes, then writes all three sections.

    $ quillsim log --clear && quillsim trustee add VOL1 /docs/a.txt 'Unknown(21350)' rf
    ? 0
    $ trovan save VOL1 -m a
    > <metadata>
    > <trusteeInfo>
    > <file><zid>857901855</zid><path><![CDATA[/docs/a.txt]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>601066489</zid><path>\docs</path><spaceUsed>0</spaceUsed><quotaAmount>5000</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/docs/a.txt</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    ? 0
