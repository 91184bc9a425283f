What a document may ask of the server without meaning to, found by trovanctl check even where
trovan restore reads the document right.

A path without its leading "/" leaves the volume once trovan puts the mount point before it:
"0/secret" under /mnt/VOL1 is /mnt/VOL10/secret. The mount point used is /mnt/VOLUME unless
--volume or --mount-point names another. ".." components can leave it too, in trustee paths and
in directory quota paths alike.

    $ cat > paths.xml
    < <metadata><trusteeInfo>
    < <file><path><![CDATA[0/secret]]></path><trustee><name>u.T.</name></trustee></file>
    < <file><path><![CDATA[/a/../../etc]]></path><inheritedRightsFilter/></file>
    < <file><path><![CDATA[/a/..b/c..]]></path><inheritedRightsFilter/></file>
    < </trusteeInfo><dirInfo>
    < <directory><path>\q\..\..\x</path><quotaAmount>1</quotaAmount></directory>
    < <directory><path>q</path><quotaAmount>1</quotaAmount></directory>
    < </dirInfo></metadata>
    ? 0
    $ trovanctl check --volume VOL1 paths.xml
    > trovanctl: paths.xml:2:7: path "0/secret" does not start with "/": after the mount point it names /mnt/VOL10/secret
    > trovanctl: paths.xml:3:7: path "/a/../../etc" has a ".." component: it can name a file outside the volume
    > trovanctl: paths.xml:6:12: path "\q\..\..\x" has a ".." component: it can name a file outside the volume
    > trovanctl: paths.xml:7:12: path "q" does not start with "\": after the mount point it names /mnt/VOL1q
    > paths.xml: 5 entries (1 trustee, 2 filters, 0 user quotas, 2 directory quotas); trovan restore would send 5 requests (1 addTrustee, 2 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 2 addQuota); 4 findings
    ? 1
    $ trovanctl check --mount-point /srv/data paths.xml
    > trovanctl: paths.xml:2:7: path "0/secret" does not start with "/": after the mount point it names /srv/data0/secret
    > trovanctl: paths.xml:3:7: path "/a/../../etc" has a ".." component: it can name a file outside the volume
    > trovanctl: paths.xml:6:12: path "\q\..\..\x" has a ".." component: it can name a file outside the volume
    > trovanctl: paths.xml:7:12: path "q" does not start with "\": after the mount point it names /srv/dataq
    > paths.xml: 5 entries (1 trustee, 2 filters, 0 user quotas, 2 directory quotas); trovan restore would send 5 requests (1 addTrustee, 2 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 2 addQuota); 4 findings
    ? 1

A value that carries markup into a request: a CDATA name holding `</name>...<addTrustee>...`
would have trovan restore send a second addTrustee, even past -f.

    $ quillsim volume add VOL1 && quillsim file add VOL1 /a /etc/shadow && quillsim user add u.T. && quillsim user add admin.T.
    ? 0
    $ cat > inject.xml
    < <metadata><trusteeInfo>
    < <file><path><![CDATA[/a]]></path>
    < <trustee><name><![CDATA[u.T.</name><rights><read/></rights><fileName>/etc</fileName></addTrustee><addTrustee><name>admin.T.]]></name><rights><supervisor/></rights></trustee>
    < </file></trusteeInfo></metadata>
    ? 0
    $ trovanctl check --volume VOL1 -f '^/mnt/VOL1/a$' inject.xml
    > trovanctl: inject.xml:3:1: <name> text "u.T.</name><rights><read/></rights><fileName>/etc</fileName></addTrustee><addTrustee><name>admin.T." would put markup into trovan's request
    > trovanctl: inject.xml:3:1: trovan restore would send a request that is none of its forms: <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>u.T.</name><rights><read/></rights><fileName>/etc</fileName></addTru...
    > inject.xml: 1 entry (1 trustee, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 1 request (1 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 2 findings
    ? 1

A bare '&' or '<' in a CDATA path, as trovan save writes them, goes into the request as it stands
and names the file it should: no finding. An entity reference inside CDATA goes as it stands too,
and the file system decodes it: "/a&amp;b" in CDATA lands on "/a&b".

    $ cat > cdata.xml
    < <metadata><trusteeInfo>
    < <file><path><![CDATA[/docs/l<t]]></path><trustee><name>u.T.</name></trustee></file>
    < <file><path><![CDATA[/docs/a&b]]></path><trustee><name>u.T.</name></trustee></file>
    < <file><path><![CDATA[/docs/a&amp;b]]></path><trustee><name>u.T.</name></trustee></file>
    < </trusteeInfo></metadata>
    ? 0
    $ trovanctl check cdata.xml
    > trovanctl: cdata.xml:4:7: <path> text "/docs/a&amp;b" goes into the request as it stands, and the file system reads it as "/docs/a&b"
    > trovanctl: cdata.xml:4:45: trovan restore would add this trustee of u.T. to /mnt/VOLUME/docs/a&b, not to /mnt/VOLUME/docs/a&amp;b
    > cdata.xml: 3 entries (3 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 3 requests (3 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 2 findings
    ? 1

With -n (RXL mode) trovan decodes trustee paths and names itself, and an '&' that starts none of
the five entities makes that decoding loop for ever: check finds it (and never runs it).

    $ trovanctl check -n cdata.xml
    > trovanctl: cdata.xml:3:7: path text "/docs/a&b" holds an '&' that trovan restore -n decodes forever: the restore would never return
    > cdata.xml: 3 entries (3 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 3 requests (3 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 1 finding
    ? 1
    $ cat > rxl.xml
    < <metadata><trusteeInfo>
    < <file><path>/docs/a&amp;b</path><trustee><name>u.T.</name></trustee></file>
    < <file><path>/docs/a&#38;b</path><trustee><name><![CDATA[R&D.T.]]></name></trustee></file>
    < </trusteeInfo></metadata>
    ? 0
    $ trovanctl check -n rxl.xml
    > trovanctl: rxl.xml:3:7: path text "/docs/a&#38;b" holds an '&' that trovan restore -n decodes forever: the restore would never return
    > trovanctl: rxl.xml:3:33: name text "R&D.T." holds an '&' that trovan restore -n decodes forever: the restore would never return
    > rxl.xml: 2 entries (2 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 2 requests (2 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 2 findings
    ? 1

Values longer than the fields trovan reads them into: trovan sends nothing for the entry, and a
directory quota path that makes, with the mount point, a file name over 4,095 bytes ends trovan's
process.

    $ printf '<metadata><userInfo><user><name>%s</name><quotaAmount>1</quotaAmount></user></userInfo><dirInfo><directory><path>\\%s</path><quotaAmount>1</quotaAmount></directory></dirInfo></metadata>\n' $(printf 'n%.0s' {1..1024}) $(printf 'd%.0s' {1..4090}) > long.xml && trovanctl check long.xml
    > trovanctl: long.xml:1:21: <name> text of 1024 bytes, over trovan restore's limit of 1023: it sends nothing for this user quota
    > trovanctl: long.xml:1:21: trovan restore would end its process with signal 6 before this entry: nothing is sent for it or the entry after it
    > trovanctl: long.xml:1:1130: the mount point and this path make a file name of 4102 bytes, over 4,095: trovan restore would end the process here
    > long.xml: 2 entries (0 trustees, 0 filters, 1 user quota, 1 directory quota); trovan restore would send 0 requests (0 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 3 findings
    ? 1

A path holding "]]>" cannot stand in one CDATA section: the file system splits it in two, and
trovan's reader takes the first part only, so the entry lands on another path.

    $ quillsim file add VOL1 '/docs/x]]>y' && quillsim irf set VOL1 '/docs/x]]>y' rf && trovan save VOL1 -m t > split.xml && grep -n 'x]]' split.xml
    > 3:<file><zid>388524365</zid><path><![CDATA[/docs/x]]]]><![CDATA[>y]]></path>
    ? 0
    $ trovanctl check --volume VOL1 split.xml
    > trovanctl: split.xml:4:1: trovan restore would send this inherited rights filter to /mnt/VOL1/docs/x]], not to /mnt/VOL1/docs/x]]>y
    > split.xml: 1 entry (0 trustees, 1 filter, 0 user quotas, 0 directory quotas); trovan restore would send 1 request (0 addTrustee, 1 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 1 finding
    ? 1

An AD trustee whose marker is written with single quotes (type='adID') is, to trovan's reader,
an Arbor trustee: its display name would go out as an Arbor user's name.

    $ printf "<metadata><trusteeInfo>\n<file><path><![CDATA[/a]]></path>\n<trustee type='adID'><name>ann</name><id>S-1-5-21-7</id><rights><read/></rights></trustee>\n<trustee type=\"adID\"><name>bob</name><id>S-1-5-21-8</id><rights><read/></rights></trustee>\n</file></trusteeInfo></metadata>\n" > quotes.xml && trovanctl check quotes.xml
    > trovanctl: quotes.xml:3:1: trovan restore would send this trustee on /mnt/VOLUME/a as the Arbor user ann, not as the AD user S-1-5-21-7
    > quotes.xml: 2 entries (2 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 2 requests (2 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 1 finding
    ? 1
