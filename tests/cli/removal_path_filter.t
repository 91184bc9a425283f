Removal with a path filter: `-p` narrows the trustee section that is written, not the removal.
Every invalid trustee of the volume goes; the document then holds the files under /test1 (and,
the filter being a plain prefix, under /test10).

    $ quillsim volume add VOL1
    ? 0
    $ quillsim file add VOL1 /test1/a /test10/b /test2/c
    ? 0
    $ quillsim user add bob.corp.TREE.
    ? 0
    $ quillsim trustee add VOL1 /test1/a 'Unknown(21350)' rf
    ? 0
    $ quillsim trustee add VOL1 /test1/a bob.corp.TREE. rf
    ? 0
    $ quillsim trustee add VOL1 /test10/b 'Unknown(21350)' r
    ? 0
    $ quillsim trustee add VOL1 /test10/b bob.corp.TREE. r
    ? 0
    $ quillsim trustee add VOL1 /test2/c 'Unknown(21350)' r
    ? 0
    $ quillsim trustee add-ad VOL1 /test2/c S-1-5-21-1-2-3-9999 r --name carol
    ? 0
    $ quillsim trustee add VOL1 /test2/c bob.corp.TREE. r
    ? 0
    $ trovan save VOL1 -m r -p test1
    > <metadata>
    > <trusteeInfo>
    > <file><zid>836070461</zid><path><![CDATA[/test1/a]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>127079638</zid><path><![CDATA[/test10/b]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/test1/a</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/test10/b</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/test2/c</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee type="adID"><fileName>VOL1:/test2/c</fileName><userID>S-1-5-21-1-2-3-9999</userID></removeTrustee></trustee></fileRequest>
    ? 0

The file outside the filter lost its invalid trustees too.

    $ trovan save VOL1 -m t -p /test2
    > <metadata>
    > <trusteeInfo>
    > <file><zid>379764766</zid><path><![CDATA[/test2/c]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
