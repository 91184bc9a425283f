The remove-invalid letter: which masks remove invalid trustees first, and which sections follow.
The volume has a valid Arbor trustee, a trustee whose user is gone (Unknown(21350)), and quotas.

    $ quillsim volume add VOL1 && quillsim file add VOL1 /test1/a /test2/b && quillsim user add bob.corp.TREE. && quillsim trustee add VOL1 /test1/a bob.corp.TREE. rwf && quillsim trustee add VOL1 /test2/b 'Unknown(21350)' r && quillsim quota user VOL1 bob.corp.TREE. 1000 && quillsim quota dir VOL1 /test1 77
    ? 0

With a quota letter and no trustee letter nothing is removed and no trustee section is written.

    $ trovan save VOL1 -m ru && quillsim log
    > <metadata>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > </userInfo>
    > </metadata>
    ? 0

    $ trovan save VOL1 -m rd && quillsim log
    > <metadata>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

"r" alone removes, then still writes the trustee section (already without the removed trustee).

    $ trovan save VOL1 -m r && quillsim log && quillsim log --clear
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/test2/b</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    ? 0

    $ quillsim trustee add VOL1 /test2/b 'Unknown(21350)' r && trovan save VOL1 -m rt && quillsim log && quillsim log --clear
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/test2/b</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    ? 0

"a" removes, then writes all three sections.

    $ quillsim trustee add VOL1 /test2/b 'Unknown(21350)' r && trovan save VOL1 -m a && quillsim log && quillsim log --clear
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/test2/b</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    ? 0

With -n and the trustee letter the trustees come from the RXL trustee file and nothing is removed.

    $ quillsim trustee add VOL1 /test2/b 'Unknown(21350)' r && quillsim rxl trustee VOL1 /test1/a bob.corp.TREE. RF && trovan save VOL1 -n -m a && quillsim log
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/test1/a</path>
    > <trustee><name>bob.corp.TREE.</name><id>175402c6-687f-0c90-3bd4-264a284a3efa</id><rights value="rf"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo><userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

    $ trovan save VOL1 -n -m rt && quillsim log
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/test1/a</path>
    > <trustee><name>bob.corp.TREE.</name><id>175402c6-687f-0c90-3bd4-264a284a3efa</id><rights value="rf"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo></metadata>
    ? 0

    $ trovan save VOL1 -n -m t -p /test1
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/test1/a</path>
    > <trustee><name>bob.corp.TREE.</name><id>175402c6-687f-0c90-3bd4-264a284a3efa</id><rights value="rf"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo></metadata>
    ? 0

With -n, "r" alone still removes and copies the trustees from the info file.

    $ trovan save VOL1 -n -m r && quillsim log && quillsim log --clear
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/test2/b</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    ? 0
