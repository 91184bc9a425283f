Removing invalid trustees before a save: `trovan save VOL -m r` asks the file system to remove
every trustee named "Unknown(21350)" and every AD trustee whose SID no longer names a user, then
writes the trustee section as it is afterwards.

A volume with Arbor and AD trustees. ann's SID resolves; carol's and the unnamed 8888's do not.
dora's SID resolves too, but her trustee was added while the SID was unknown, so the file system
still calls it "Unknown(21350)". The names on c.txt only look like the marker.

    $ quillsim volume add VOL1
    ? 0
    $ quillsim file add VOL1 /docs/a.txt /docs/b.txt /docs/c.txt
    ? 0
    $ quillsim user add bob.corp.TREE.
    ? 0
    $ quillsim user add-ad S-1-5-21-1-2-3-1104 ann
    ? 0
    $ quillsim trustee add VOL1 /docs/a.txt 'Unknown(21350)' rwf
    ? 0
    $ quillsim trustee add VOL1 /docs/a.txt bob.corp.TREE. rf
    ? 0
    $ quillsim trustee add-ad VOL1 /docs/a.txt S-1-5-21-1-2-3-1104 rf
    ? 0
    $ quillsim trustee add-ad VOL1 /docs/b.txt S-1-5-21-1-2-3-9999 rf --name carol
    ? 0
    $ quillsim trustee add-ad VOL1 /docs/b.txt S-1-5-21-1-2-3-7777 r
    ? 0
    $ quillsim user add-ad S-1-5-21-1-2-3-7777 dora
    ? 0
    $ quillsim trustee add-ad VOL1 /docs/c.txt S-1-5-21-1-2-3-8888 r
    ? 0
    $ quillsim trustee add VOL1 /docs/c.txt 'Unknown(21350) ' r
    ? 0
    $ quillsim trustee add VOL1 /docs/c.txt 'unknown(21350)' r
    ? 0

The save removes the Arbor "Unknown(21350)" trustee (plain form; the file system gives such
trustees an empty identifier), carol and the unnamed 8888 (AD form: their SIDs do not resolve)
and dora's trustee (plain form: her SID resolves but the name is the marker). ann, bob and the
two look-alike names stay. The document shows the volume after the removal.

    $ trovan save VOL1 -m r
    > <metadata>
    > <trusteeInfo>
    > <file><zid>857901855</zid><path><![CDATA[/docs/a.txt]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>182334645</zid><path><![CDATA[/docs/c.txt]]></path>
    > <trustee><name>Unknown(21350) </name><id></id><rights value="R"><read/></rights></trustee>
    > <trustee><name>unknown(21350)</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/docs/a.txt</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee type="adID"><fileName>VOL1:/docs/b.txt</fileName><userID>S-1-5-21-1-2-3-9999</userID></removeTrustee></trustee></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/docs/b.txt</fileName><userID>S-1-5-21-1-2-3-7777</userID></removeTrustee></trustee></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee type="adID"><fileName>VOL1:/docs/c.txt</fileName><userID>S-1-5-21-1-2-3-8888</userID></removeTrustee></trustee></fileRequest>
    ? 0

The trustees are gone from the volume: a plain save that follows no longer has them, and sends
nothing.

    $ quillsim log --clear
    ? 0
    $ trovan save VOL1 -m t
    > <metadata>
    > <trusteeInfo>
    > <file><zid>857901855</zid><path><![CDATA[/docs/a.txt]]></path>
    > <trustee><name>bob.corp.TREE.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>182334645</zid><path><![CDATA[/docs/c.txt]]></path>
    > <trustee><name>Unknown(21350) </name><id></id><rights value="R"><read/></rights></trustee>
    > <trustee><name>unknown(21350)</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
    $ quillsim log
    ? 0

A second removal finds nothing left to remove.

    $ trovan save VOL1 -m r >/dev/null
    ? 0
    $ quillsim log
    ? 0
