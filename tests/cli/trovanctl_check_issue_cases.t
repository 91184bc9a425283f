Two documents that trovan restore applies wrongly without a word, found by trovanctl check
before anything is applied.

A volume with four trustees, saved.

    $ quillsim volume add VOL1 && quillsim volume add VOL2 && for v in VOL1 VOL2; do quillsim file add $v /a.txt /b/y.txt /c.txt; done
    ? 0
    $ quillsim user add u0.corp.TREE. && quillsim user add u1.corp.TREE.
    ? 0
    $ quillsim trustee add VOL1 /a.txt u0.corp.TREE. rw && quillsim trustee add VOL1 /b u0.corp.TREE. rf && quillsim trustee add VOL1 /b/y.txt u1.corp.TREE. r && quillsim trustee add VOL1 /c.txt u1.corp.TREE. rwc
    ? 0
    $ trovan save VOL1 -m t > saved.xml && grep -n '' saved.xml
    > 1:<metadata>
    > 2:<trusteeInfo>
    > 3:<file><zid>592285195</zid><path><![CDATA[/a.txt]]></path>
    > 4:<trustee><name>u0.corp.TREE.</name><id></id><rights value="RW"><read/><write/></rights></trustee>
    > 5:</file>
    > 6:<file><zid>142484084</zid><path><![CDATA[/b]]></path>
    > 7:<trustee><name>u0.corp.TREE.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > 8:</file>
    > 9:<file><zid>231570942</zid><path><![CDATA[/b/y.txt]]></path>
    > 10:<trustee><name>u1.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > 11:</file>
    > 12:<file><zid>775244449</zid><path><![CDATA[/c.txt]]></path>
    > 13:<trustee><name>u1.corp.TREE.</name><id></id><rights value="RWC"><read/><write/><create/></rights></trustee>
    > 14:</file>
    > 15:</trusteeInfo>
    > 16:</metadata>
    ? 0

One `</trustee>` deleted by hand: the XML is no longer well-formed, and check says where.

    $ sed '7s#</trustee>##' saved.xml > edited.xml && trovanctl check edited.xml
    > trovanctl: edited.xml:8:3: not well-formed XML: mismatched tag (the open element is <trustee> of line 7)
    > trovanctl: edited.xml:8:3: past the point where the document stops being XML, trovan restore would still send this trustee of u1.corp.TREE. on /mnt/VOLUME/b [r]
    > trovanctl: edited.xml:8:3: past the point where the document stops being XML, trovan restore would still send this trustee of u1.corp.TREE. on /mnt/VOLUME/c.txt [rwc]
    > edited.xml: 1 entry (1 trustee, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 3 requests (3 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 3 findings
    ? 1

What trovan restore makes of it, for the record: u1 gets [r] on /b instead of /b/y.txt, and the
trustee after it is dropped; only "Unrecognized tag" lines are printed, and the status is 0.

    $ trovan restore VOL2 -a < edited.xml
    > Restoring trustees
    > Trustee u0.corp.TREE. added to $SANDBOX/mnt/VOL2/a.txt with rights [rw].
    > Trustee u1.corp.TREE. added to $SANDBOX/mnt/VOL2/b with rights [r].
    > Trustee u1.corp.TREE. added to $SANDBOX/mnt/VOL2/c.txt with rights [rwc].
    > Restoring trustees - completed
    2> Unrecognized tag: file
    2> Unrecognized tag: path
    2> Unrecognized tag: trustee
    ? 0
    $ quillsim dump VOL2
    > volume VOL2 mount $SANDBOX/mnt/VOL2
    > T	/a.txt	A	RW		u0.corp.TREE.
    > T	/b	A	R		u1.corp.TREE.
    > T	/c.txt	A	RWC		u1.corp.TREE.
    ? 0

The same document passed through xmllint --format: an XML declaration, and empty elements with
attributes (`<inheritedRightsFilter value=""/>`) whose end trovan's reader never finds.

    $ quillsim irf set VOL1 /a.txt none && quillsim irf set VOL1 /c.txt s && trovan save VOL1 -m t > saved2.xml
    ? 0
    $ xmllint --format saved2.xml > formatted.xml && grep -n '' formatted.xml
    > 1:<?xml version="1.0"?>
    > 2:<metadata>
    > 3:  <trusteeInfo>
    > 4:    <file>
    > 5:      <zid>592285195</zid>
    > 6:      <path><![CDATA[/a.txt]]></path>
    > 7:      <trustee>
    > 8:        <name>u0.corp.TREE.</name>
    > 9:        <id/>
    > 10:        <rights value="RW">
    > 11:          <read/>
    > 12:          <write/>
    > 13:        </rights>
    > 14:      </trustee>
    > 15:      <inheritedRightsFilter value=""/>
    > 16:    </file>
    > 17:    <file>
    > 18:      <zid>142484084</zid>
    > 19:      <path><![CDATA[/b]]></path>
    > 20:      <trustee>
    > 21:        <name>u0.corp.TREE.</name>
    > 22:        <id/>
    > 23:        <rights value="RF">
    > 24:          <read/>
    > 25:          <fileScan/>
    > 26:        </rights>
    > 27:      </trustee>
    > 28:    </file>
    > 29:    <file>
    > 30:      <zid>231570942</zid>
    > 31:      <path><![CDATA[/b/y.txt]]></path>
    > 32:      <trustee>
    > 33:        <name>u1.corp.TREE.</name>
    > 34:        <id/>
    > 35:        <rights value="R">
    > 36:          <read/>
    > 37:        </rights>
    > 38:      </trustee>
    > 39:    </file>
    > 40:    <file>
    > 41:      <zid>775244449</zid>
    > 42:      <path><![CDATA[/c.txt]]></path>
    > 43:      <trustee>
    > 44:        <name>u1.corp.TREE.</name>
    > 45:        <id/>
    > 46:        <rights value="RWC">
    > 47:          <read/>
    > 48:          <write/>
    > 49:          <create/>
    > 50:        </rights>
    > 51:      </trustee>
    > 52:      <inheritedRightsFilter value="S">
    > 53:        <supervisor/>
    > 54:      </inheritedRightsFilter>
    > 55:    </file>
    > 56:  </trusteeInfo>
    > 57:</metadata>
    ? 0
    $ trovanctl check formatted.xml
    > trovanctl: formatted.xml:1:1: an XML declaration: trovan restore refuses a document that does not start with <metadata>
    > trovanctl: formatted.xml:7:7: trovan restore would stop with status 255 before this entry: nothing is sent for it or the 5 entries after it
    > trovanctl: formatted.xml:15:7: <inheritedRightsFilter> written as an empty element with attributes: trovan restore does not see where it ends and reads the elements after it as its content
    > formatted.xml: 6 entries (4 trustees, 2 filters, 0 user quotas, 0 directory quotas); trovan restore would send 0 requests (0 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 3 findings
    ? 1

Without its declaration, trovan restore reads the formatted document, but not as it was meant:
check finds the empty element all the same.

    $ sed 1d formatted.xml > formatted-bare.xml && trovanctl check formatted-bare.xml
    > trovanctl: formatted-bare.xml:14:7: <inheritedRightsFilter> written as an empty element with attributes: trovan restore does not see where it ends and reads the elements after it as its content
    > trovanctl: formatted-bare.xml:14:7: trovan restore would send this inherited rights filter on /mnt/VOLUME/a.txt with rights [rwcfs] and elements that are not rights, not []
    > trovanctl: formatted-bare.xml:19:7: trovan restore would send nothing for this trustee of u0.corp.TREE. on /mnt/VOLUME/b
    > trovanctl: formatted-bare.xml:31:7: trovan restore would send nothing for this trustee of u1.corp.TREE. on /mnt/VOLUME/b/y.txt
    > trovanctl: formatted-bare.xml:42:7: trovan restore would send nothing for this trustee of u1.corp.TREE. on /mnt/VOLUME/c.txt
    > trovanctl: formatted-bare.xml:51:7: trovan restore would send nothing for this inherited rights filter on /mnt/VOLUME/c.txt
    > formatted-bare.xml: 6 entries (4 trustees, 2 filters, 0 user quotas, 0 directory quotas); trovan restore would send 2 requests (1 addTrustee, 1 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 6 findings
    ? 1
