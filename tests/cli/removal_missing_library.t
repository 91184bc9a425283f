Without the identity library, no trustee is removed for want of a lookup: every SID counts as
a user that exists, so only the trustees named "Unknown(21350)" go, each with the plain form.
The load failure is told once.

    $ quillsim volume add VOL1
    ? 0
    $ quillsim file add VOL1 /docs/a.txt /docs/b.txt
    ? 0
    $ quillsim user add-ad S-1-5-21-1-2-3-1104 ann
    ? 0
    $ quillsim trustee add VOL1 /docs/a.txt 'Unknown(21350)' rf
    ? 0
    $ quillsim trustee add-ad VOL1 /docs/a.txt S-1-5-21-1-2-3-1104 rf
    ? 0
    $ quillsim trustee add-ad VOL1 /docs/b.txt S-1-5-21-1-2-3-9999 r --name carol
    ? 0
    $ quillsim trustee add-ad VOL1 /docs/b.txt S-1-5-21-1-2-3-8888 r
    ? 0
    $ LD_LIBRARY_PATH= trovan save VOL1 -m r
    > <metadata>
    > <trusteeInfo>
    > <file><zid>857901855</zid><path><![CDATA[/docs/a.txt]]></path>
    > <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>450839894</zid><path><![CDATA[/docs/b.txt]]></path>
    > <trustee type="adID"><name>carol</name><id>S-1-5-21-1-2-3-9999</id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    2> Unable to load the identity library liblumo.so.0: liblumo.so.0: cannot open shared object file: No such file or directory
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/docs/a.txt</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/docs/b.txt</fileName><userID>S-1-5-21-1-2-3-8888</userID></removeTrustee></trustee></fileRequest>
    ? 0

With the library back, carol's SID is found not to resolve, and she goes.

    $ quillsim log --clear
    ? 0
    $ trovan save VOL1 -m r >/dev/null
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee type="adID"><fileName>VOL1:/docs/b.txt</fileName><userID>S-1-5-21-1-2-3-9999</userID></removeTrustee></trustee></fileRequest>
    ? 0
