Failures around the removal. A removal that the file system refuses is reported and the save goes
on; a trustee info file that cannot be opened ends the save early, with the code 0 that the
removal reports.

    $ quillsim volume add VOL1
    ? 0
    $ quillsim file add VOL1 /docs/a.txt /docs/b.txt
    ? 0
    $ quillsim trustee add VOL1 /docs/a.txt 'Unknown(21350)' rf
    ? 0
    $ quillsim trustee add-ad VOL1 /docs/b.txt S-1-5-21-1-2-3-9999 r --name carol
    ? 0
    $ quillsim fault refuse 'VOL1:/docs/a.txt' 61 'trustee not found' nobody
    ? 0
    $ trovan save VOL1 -m r
    > <metadata>
    > <trusteeInfo>
    > <file><zid>857901855</zid><path><![CDATA[/docs/a.txt]]></path>
    > <trustee><name>Unknown(21350)</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    2> Error removing trustee  from VOL1:/docs/a.txt: trustee not found(nobody)
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee><fileName>VOL1:/docs/a.txt</fileName><userID></userID></removeTrustee></trustee></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustee><removeTrustee type="adID"><fileName>VOL1:/docs/b.txt</fileName><userID>S-1-5-21-1-2-3-9999</userID></removeTrustee></trustee></fileRequest>
    ? 0

A reply without its result is reported by the channel, then by the removal.

    $ quillsim fault clear
    ? 0
    $ quillsim fault no-result removeTrustee
    ? 0
    $ trovan save VOL1 -m r >/dev/null
    2> Unable to find return value for the request.  response=<quillReply>
    2> <removeTrustee><description>no result</description></removeTrustee>
    2> </quillReply>
    2> 
    2> Error removing trustee  from VOL1:/docs/a.txt: ()
    ? 0
    $ quillsim fault clear
    ? 0

A trustee info file that opens as nothing readable (here a socket) stops the removal before any
request, and the save with it: the document has only its first line, and the status is 0.

    $ quillsim log --clear
    ? 0
    $ cd "$QUILLSIM_ROOT/_admin/Manage_QUILL/Volume/VOL1" && rm -f TrusteeInfo.xml && env -u LD_PRELOAD python3 -c 'import socket; socket.socket(socket.AF_UNIX).bind("TrusteeInfo.xml")'
    ? 0
    $ trovan save VOL1 -m r
    > <metadata>
    2>  util/trovan/trovan[3210] Failed to open file /_admin/Manage_QUILL/Volume/VOL1/TrusteeInfo.xml:No such device or address
    2> An error has caused early termination. ccode=0
    ? 0
    $ quillsim log
    ? 0
