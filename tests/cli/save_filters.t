The path and user-type filters of a save, on the volume that data/save_volume.sh seeds.

    $ bash $DATA/data/save_volume.sh VOL1
    ? 0

With -p the trustee section keeps the files whose path begins with the given path (a plain
prefix: /test10 begins with /test1), and the directory quotas are filtered with the same path in
backslash form. User quotas are never filtered by path.

    $ trovan save VOL1 -p /test1
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>143857257</zid><path><![CDATA[/test10/c]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > <user type="adID"><id>S-1-5-21-1-2-3-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2000</quotaAmount><name>ann</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

    $ trovan save VOL1 -m td -p test1/
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>143857257</zid><path><![CDATA[/test10/c]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

    $ trovan save VOL1 -m tu -p /test2
    > <metadata>
    > <trusteeInfo>
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
    > </metadata>
    ? 0

-u arbor drops the AD trustees and AD user quotas; untyped ones stay. Directory quotas are
never filtered by user type.

    $ trovan save VOL1 -u arbor
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>143857257</zid><path><![CDATA[/test10/c]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > <file><zid>254975260</zid><path><![CDATA[/test2]]></path>
    > <inheritedRightsFilter value="RF"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > <file><zid>396542385</zid><path><![CDATA[/test2/b]]></path>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>bob.corp.TREE.</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > <directory><zid>254975260</zid><path>\test2</path><spaceUsed>0</spaceUsed><quotaAmount>88</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

-u ad drops the Arbor trustees and user quotas.

    $ trovan save VOL1 -u ad
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>143857257</zid><path><![CDATA[/test10/c]]></path>
    > </file>
    > <file><zid>254975260</zid><path><![CDATA[/test2]]></path>
    > <inheritedRightsFilter value="RF"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > <file><zid>396542385</zid><path><![CDATA[/test2/b]]></path>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > <user type="adID"><id>S-1-5-21-1-2-3-1104</id><spaceUsed>0</spaceUsed><quotaAmount>2000</quotaAmount><name>ann</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > <directory><zid>254975260</zid><path>\test2</path><spaceUsed>0</spaceUsed><quotaAmount>88</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

Both filters together.

    $ trovan save VOL1 -u arbor -p /test1 -m td
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>143857257</zid><path><![CDATA[/test10/c]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <dirInfo>
    > <directory><zid>305308117</zid><path>\test1</path><spaceUsed>0</spaceUsed><quotaAmount>77</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

    $ trovan save VOL1 -m t -u ad -p /test2
    > <metadata>
    > <trusteeInfo>
    > <file><zid>254975260</zid><path><![CDATA[/test2]]></path>
    > <inheritedRightsFilter value="RF"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > <file><zid>396542385</zid><path><![CDATA[/test2/b]]></path>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
