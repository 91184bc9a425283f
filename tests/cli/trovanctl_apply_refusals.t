trovanctl apply: entries the server refuses, entries never sent, the rejects document run again
once the cause is fixed, and the lock that keeps one apply per volume.

The document names a user the server does not know (eve), a file the volume lacks (/gone), and a
name that would carry markup into the request.

    $ quillsim volume add VOL && quillsim file add VOL /a /b && quillsim user add bob.corp.TREE.
    ? 0
    $ cat > doc.xml
    < <metadata>
    < <trusteeInfo>
    < <file><zid></zid><path><![CDATA[/a]]></path>
    < <trustee><name>bob.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    < <trustee><name>eve.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    < </file>
    < <file><zid></zid><path><![CDATA[/gone]]></path>
    < <inheritedRightsFilter value="R"><read/></inheritedRightsFilter>
    < </file>
    < <file><zid></zid><path><![CDATA[/b]]></path>
    < <trustee><name><![CDATA[x.T.</name><rights/><fileName>/etc</fileName></addTrustee><addTrustee><name>y.T.]]></name><id></id><rights value="R"><read/></rights></trustee>
    < </file>
    < </trusteeInfo>
    < </metadata>
    ? 0

The plan flags the missing file before anything is sent, and says which entry is never sent.

    $ trovanctl plan VOL doc.xml
    > + trustee /a bob.corp.TREE. [r]
    > + trustee /a eve.corp.TREE. [r]
    > + inherited rights filter /gone [r]: may be refused: no such file under the mount point: $SANDBOX/mnt/VOL/gone
    > x trustee /b x.T.</name><rights/><fileName>/etc</fileName></addTrustee><addTrustee><name>y.T. [r]: never sent: <name> text "x.T.</name><rights/><fileName>/etc</fileName></addTrustee><addTrustee><name>y.T." would put markup into trovan's request
    > plan VOL <- doc.xml: 3 to add, 0 to change, 0 in place, 0 skipped, 1 never sent (1 may be refused); 0 on the volume only (0 to remove)
    ? 1

apply refuses a document with findings unless --force; even then the markup entry is never sent.

    $ trovanctl apply VOL doc.xml
    > refuse    trustee /b x.T.</name><rights/><fileName>/etc</fileName></addTrustee><addTrustee><name>y.T. [r]: never sent: <name> text "x.T.</name><rights/><fileName>/etc</fileName></addTrustee><addTrustee><name>y.T." would put markup into trovan's request
    2> trovanctl: apply: doc.xml: 1 problem(s) found (see trovanctl check); nothing sent. --force sends the changes anyway
    ? 2
    $ quillsim log --clear && trovanctl apply VOL doc.xml --force --rejects rejects.xml
    > refuse    trustee /b x.T.</name><rights/><fileName>/etc</fileName></addTrustee><addTrustee><name>y.T. [r]: never sent: <name> text "x.T.</name><rights/><fileName>/etc</fileName></addTrustee><addTrustee><name>y.T." would put markup into trovan's request
    > applied   trustee /a bob.corp.TREE. [r]
    > refused   trustee /a eve.corp.TREE. [r]: 3 user not found
    > refused   inherited rights filter /gone [r]: 2 file not found
    > apply VOL <- doc.xml: 1 applied, 0 in place, 3 refused, 0 skipped, 0 removed
    ? 1
    $ quillsim log --root-as '$SANDBOX'
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/></rights><fileName>$SANDBOX/mnt/VOL/a</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>eve.corp.TREE.</name><rights><read/></rights><fileName>$SANDBOX/mnt/VOL/a</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><modifyInheritedRightsFilter><inheritedRightsFilter><read/></inheritedRightsFilter><fileName>$SANDBOX/mnt/VOL/gone</fileName><gemelPath/></modifyInheritedRightsFilter></trustees></fileRequest>
    ? 0
    $ cat rejects.xml
    > <metadata>
    > <trusteeInfo>
    > <file><zid></zid><path><![CDATA[/b]]></path>
    > <trustee><name>x.T.&lt;/name&gt;&lt;rights/&gt;&lt;fileName&gt;/etc&lt;/fileName&gt;&lt;/addTrustee&gt;&lt;addTrustee&gt;&lt;name&gt;y.T.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > <file><zid></zid><path><![CDATA[/a]]></path>
    > <trustee><name>eve.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > <file><zid></zid><path><![CDATA[/gone]]></path>
    > <inheritedRightsFilter value="R"><read/></inheritedRightsFilter>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0

A fault of the server is refused with its result value and description.

    $ quillsim fault refuse '<userSpaceRestrictions>' 19 'volume offline' && cat > quota.xml
    < <metadata>
    < <userInfo>
    < <user><id></id><spaceUsed></spaceUsed><quotaAmount>700</quotaAmount><name>bob.corp.TREE.</name></user>
    < </userInfo>
    < </metadata>
    ? 0
    $ trovanctl apply VOL quota.xml --json --rejects quota-rejects.xml
    > {"type":"apply","action":"refused","line":3,"kind":"user quota","path":"","user":"bob.corp.TREE.","value":"700","result":19,"description":"volume offline"}
    > {"type":"apply-summary","volume":"VOL","document":"quota.xml","applied":0,"inPlace":0,"refused":1,"skipped":0,"removed":0,"notSent":0}
    ? 1
    $ quillsim fault clear && trovanctl apply VOL quota-rejects.xml
    > applied   user quota bob.corp.TREE. 700
    > apply VOL <- quota-rejects.xml: 1 applied, 0 in place, 0 refused, 0 skipped, 0 removed
    ? 0

Once the user exists and the file is made, the rejects document completes the volume. The entry
that was never sent is written there as the canonical writer writes every name, entity-encoded:
it no longer carries markup, and the server refuses it as the unknown user it names. Only that
entry is sent again by a second run.

    $ quillsim user add eve.corp.TREE. && quillsim file add VOL /gone && trovanctl apply VOL rejects.xml --force
    > refused   trustee /b x.T.</name><rights/><fileName>/etc</fileName></addTrustee><addTrustee><name>y.T. [r]: 3 user not found
    > applied   trustee /a eve.corp.TREE. [r]
    > applied   inherited rights filter /gone [r]
    > apply VOL <- rejects.xml: 2 applied, 0 in place, 1 refused, 0 skipped, 0 removed
    ? 1
    $ quillsim log --clear && trovanctl apply VOL rejects.xml --force --quiet >/dev/null; quillsim log
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>x.T.&lt;/name&gt;&lt;rights/&gt;&lt;fileName&gt;/etc&lt;/fileName&gt;&lt;/addTrustee&gt;&lt;addTrustee&gt;&lt;name&gt;y.T.</name><rights><read/></rights><fileName>$SANDBOX/mnt/VOL/b</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    ? 0

One apply per volume: while another process holds the volume's lock, --no-wait stops at once and
names the holder.

    $ flock "$SANDBOX/mnt/VOL" trovanctl apply VOL quota.xml --no-wait 2>&1 | sed 's/process [0-9]*/process PID/'; echo "status ${PIPESTATUS[0]}"
    > trovanctl: apply: volume VOL is locked by process PID (an apply in progress); nothing sent
    > status 2
    ? 0
