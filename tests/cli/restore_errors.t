Restore end to end: refusals, the codes that end a restore, and the options that choose what
is restored.

    $ quillsim volume add V --shadow VS && quillsim file add V /a /b/c /d/ && quillsim user add u.corp.T. && quillsim user add u.corp.NEW.
    ? 0

A document cut off after its trustee section: the section is restored, the reader then gives
the section's start tag once more (the input ran out in the text after it), and the second pass
meets the end of input. The run ends with -99, that is status 157.

    $ printf '<metadata>\n<trusteeInfo>\n<file><path><![CDATA[/a]]></path>\n<trustee><name>u.corp.T.</name><id></id><rights value="R"><read/></rights></trustee>\n</file>\n</trusteeInfo>\n' | trovan restore V -a
    > Restoring trustees
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/a with rights [r].
    > Restoring trustees - completed
    > Restoring trustees
    ? 157
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>u.corp.T.</name><rights><read/></rights><fileName>$SANDBOX/mnt/V/a</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    ? 0

A refused trustee is reported with the reply's description and name, and the restore goes on;
a trustee with neither name nor id then ends it with -1 (status 255), without a message.

    $ quillsim fault refuse /b/c 3 'user not found' u.corp.T.
    ? 0
    $ printf '<metadata><trusteeInfo><file><path>/b/c</path><trustee><name>u.corp.T.</name></trustee></file><file><path>/a</path><trustee><rights><read/></rights></trustee></file></trusteeInfo></metadata>' | trovan restore V
    2> Error adding trustee u.corp.T. to $SANDBOX/mnt/V/b/c: user not found(u.corp.T.)
    ? 255
    $ quillsim fault clear && quillsim log --clear
    ? 0

-t puts the new tree into the names, -f keeps only the paths it matches (from the mount point).

    $ printf '<metadata><trusteeInfo><file><path>/a</path><trustee><name>u.corp.OLD.</name></trustee></file><file><path>/b/c</path><trustee><name>u.corp.OLD.</name></trustee></file></trusteeInfo></metadata>' > t.xml
    ? 0
    $ trovan restore V -t NEW -f '^.*/b/' -a < t.xml
    > Restoring trustees
    > Trustee u.corp.NEW. added to $SANDBOX/mnt/V/b/c with rights [].
    > Restoring trustees - completed
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>u.corp.NEW.</name><rights></rights><fileName>$SANDBOX/mnt/V/b/c</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    ? 0

A volume that is not mounted ends the restore when its first section needs the mount point.

    $ trovan restore NOVOL < t.xml
    2> Volume not found in the mount table
    ? 255

-u arbor restores only the plain users; -d traces every tag the walkers read.

    $ quillsim log --clear && printf '<metadata><userInfo><user><quotaAmount>5</quotaAmount><name>u.corp.T.</name></user><user type="adID"><quotaAmount>6</quotaAmount><name>x</name></user></userInfo></metadata>' | trovan restore V -u arbor -a -d
    > **restoreMetadata(1)** ccode=0  endtag=0  tag=metadata
    > **restoreMetadata** ccode=0  endtag=0  tag=userInfo
    > Restoring user quotas
    > **restoreUserQuotas** ccode=0  endtag=0  tag=user
    > **processUserQuotaInfo** ccode=0  endtag=0  tag=quotaAmount
    > **goPastEndTag** ccode=0  endtag=1  tag=quotaAmount
    > **processUserQuotaInfo** ccode=0  endtag=0  tag=name
    > **goPastEndTag** ccode=0  endtag=1  tag=name
    > **processUserQuotaInfo** ccode=0  endtag=1  tag=user
    > User u.corp.T. assigned a quota of 5 on volume V.
    > **restoreUserQuotas** ccode=0  endtag=0  tag=user type="adID"
    > **processUserQuotaInfo** ccode=0  endtag=0  tag=quotaAmount
    > **goPastEndTag** ccode=0  endtag=1  tag=quotaAmount
    > **processUserQuotaInfo** ccode=0  endtag=0  tag=name
    > **goPastEndTag** ccode=0  endtag=1  tag=name
    > **processUserQuotaInfo** ccode=0  endtag=1  tag=user
    > **restoreUserQuotas** ccode=0  endtag=1  tag=userInfo
    > Restoring user quotas - completed
    > **restoreMetadata** ccode=0  endtag=1  tag=metadata
    ? 0
    $ quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><quillRequest><userSpaceRestrictions><set><volumeName>V</volumeName><userName>u.corp.T.</userName><quota>5</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>
    ? 0

A directory quota on a file and a refused user quota: each is reported and the restore goes on;
the no-quota marker sends nothing.

    $ quillsim log --clear && quillsim fault refuse 'bad.user' 3 'user not found' bad.user
    ? 0
    $ printf '<metadata><dirInfo><directory><path>\\b\\c</path><quotaAmount>9</quotaAmount></directory><directory><path>\\d</path><quotaAmount>9223372036854775807</quotaAmount></directory></dirInfo><userInfo><user><quotaAmount>1</quotaAmount><name>bad.user</name></user></userInfo></metadata>' | trovan restore V
    2> Error adding directory quota of 9 to $SANDBOX/mnt/V/b/c: not a directory($SANDBOX/mnt/V/b/c)
    2> Error adding user quotas for bad.user to V: user not found(bad.user)
    ? 0
    $ quillsim log | grep -c addQuota
    > 1
    ? 0
