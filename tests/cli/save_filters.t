The path and user-type filters of a save.

    $ quillsim volume add VOL1 && quillsim file add VOL1 /test1/a /test2/b /test10/c && quillsim user add bob.corp.TREE. && quillsim user add-ad S-1-5-21-1-2-3-1104 ann && quillsim trustee add VOL1 /test1/a bob.corp.TREE. rwf && quillsim trustee add-ad VOL1 /test1/a S-1-5-21-1-2-3-1104 rf && quillsim trustee add-ad VOL1 /test2/b S-1-5-21-1-2-3-1104 r && quillsim trustee add VOL1 /test10/c bob.corp.TREE. r && quillsim irf set VOL1 /test2 rf && quillsim quota user VOL1 bob.corp.TREE. 1000 && quillsim quota user VOL1 ann 2000 --ad && quillsim quota dir VOL1 /test1 77 && quillsim quota dir VOL1 /test2 88
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
