Which sections a save writes, for each mask, and in what order. The volume has Arbor and AD
trustees, a filter, Arbor and AD user quotas and two directory quotas (data/save_volume.sh).

    $ bash $DATA/data/save_volume.sh VOL1
    ? 0

Without a mask: trustees, user quotas and directory quotas, each copied from the volume's info
file without its reply wrapper, inside the metadata element.

    $ trovan save VOL1
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>143857257</zid><path><![CDATA[/test10/c]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > <file><zid>254975260</zid><path><![CDATA[/test2]]></path>
    > <inheritedRightsFilter value="RF"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > <file><zid>396542385</zid><path><![CDATA[/test2/b]]></path>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > <user type="adID"><id>S-1-5-21-1-2-3-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2000</quotaAmount><name>ann</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > <directory><zid>254975260</zid><path>\test2</path><spaceUsed>0</spaceUsed><quotaAmount>88</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

An empty mask is the same.

    $ trovan save VOL1 -m ''
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>143857257</zid><path><![CDATA[/test10/c]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > <file><zid>254975260</zid><path><![CDATA[/test2]]></path>
    > <inheritedRightsFilter value="RF"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > <file><zid>396542385</zid><path><![CDATA[/test2/b]]></path>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > <user type="adID"><id>S-1-5-21-1-2-3-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2000</quotaAmount><name>ann</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > <directory><zid>254975260</zid><path>\test2</path><spaceUsed>0</spaceUsed><quotaAmount>88</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

One letter each.

    $ trovan save VOL1 -m t
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>143857257</zid><path><![CDATA[/test10/c]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > <file><zid>254975260</zid><path><![CDATA[/test2]]></path>
    > <inheritedRightsFilter value="RF"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > <file><zid>396542385</zid><path><![CDATA[/test2/b]]></path>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0

    $ trovan save VOL1 -m u
    > <metadata>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > <user type="adID"><id>S-1-5-21-1-2-3-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2000</quotaAmount><name>ann</name></user>
    > </userInfo>
    > </metadata>
    ? 0

    $ trovan save VOL1 --mask d
    > <metadata>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > <directory><zid>254975260</zid><path>\test2</path><spaceUsed>0</spaceUsed><quotaAmount>88</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

User and directory quotas, no trustee section.

    $ trovan save VOL1 -m ud
    > <metadata>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > <user type="adID"><id>S-1-5-21-1-2-3-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2000</quotaAmount><name>ann</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > <directory><zid>254975260</zid><path>\test2</path><spaceUsed>0</spaceUsed><quotaAmount>88</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

The sections keep their order whatever the order of the letters.

    $ trovan save VOL1 -m dut
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>143857257</zid><path><![CDATA[/test10/c]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > <file><zid>254975260</zid><path><![CDATA[/test2]]></path>
    > <inheritedRightsFilter value="RF"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > <file><zid>396542385</zid><path><![CDATA[/test2/b]]></path>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > <user type="adID"><id>S-1-5-21-1-2-3-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2000</quotaAmount><name>ann</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > <directory><zid>254975260</zid><path>\test2</path><spaceUsed>0</spaceUsed><quotaAmount>88</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

The remove-invalid letter with a quota letter removes nothing and writes no trustee section.

    $ trovan save VOL1 -m rd
    > <metadata>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > <directory><zid>254975260</zid><path>\test2</path><spaceUsed>0</spaceUsed><quotaAmount>88</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

    $ trovan save VOL1 -m ru
    > <metadata>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > <user type="adID"><id>S-1-5-21-1-2-3-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2000</quotaAmount><name>ann</name></user>
    > </userInfo>
    > </metadata>
    ? 0

    $ trovan save VOL1 -m rud
    > <metadata>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > <user type="adID"><id>S-1-5-21-1-2-3-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2000</quotaAmount><name>ann</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > <directory><zid>254975260</zid><path>\test2</path><spaceUsed>0</spaceUsed><quotaAmount>88</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

With -n the quota sections still come from the info files; without the trustee letter the RXL
trustee file is not read.

    $ quillsim rxl trustee VOL1 /test1/a bob.corp.TREE. RF && trovan save VOL1 -n -m ud
    > <metadata>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > <user type="adID"><id>S-1-5-21-1-2-3-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2000</quotaAmount><name>ann</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > <directory><zid>254975260</zid><path>\test2</path><spaceUsed>0</spaceUsed><quotaAmount>88</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

    $ trovan save VOL1 -n -m rd
    > <metadata>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > <directory><zid>254975260</zid><path>\test2</path><spaceUsed>0</spaceUsed><quotaAmount>88</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

A letter that is not a metadata type stops the save before anything is written.

    $ trovan save VOL1 -m x
    2> Unknown metadata type in the mask: x
    ? 255

    $ trovan save VOL1 -m tux
    2> Unknown metadata type in the mask: x
    ? 255

    $ trovan save VOL1 -m X
    2> Unknown metadata type in the mask: X
    ? 255
