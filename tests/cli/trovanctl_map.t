trovanctl map: a new canonical document from an old one. With no rule it normalises a
well-formed document into the form trovan restore reads correctly.

A volume with trustees, filters and quotas, saved; a second, empty volume to restore into.

    $ quillsim volume add VOL1 && quillsim volume add VOL2 && for v in VOL1 VOL2; do quillsim file add $v /a.txt /b/y.txt /c.txt /new/a.txt; done
    ? 0
    $ quillsim user add u0.corp.TREE. && quillsim user add u1.corp.TREE. && quillsim user add u0.corp.NEW. && quillsim user add u9.corp.NEW.
    ? 0
    $ quillsim trustee add VOL1 /a.txt u0.corp.TREE. rw && quillsim trustee add VOL1 /b u0.corp.TREE. rf && quillsim trustee add VOL1 /b/y.txt u1.corp.TREE. r && quillsim trustee add VOL1 /c.txt u1.corp.TREE. rwc
    ? 0
    $ quillsim irf set VOL1 /a.txt none && quillsim irf set VOL1 /c.txt s && trovan save VOL1 -m t > saved.xml
    ? 0

A saved document, mapped with no rule: the same bytes but for the file numbers; check finds
nothing in it.

    $ trovanctl map saved.xml > same.xml && diff saved.xml same.xml && trovanctl check same.xml
    > same.xml: 6 entries (4 trustees, 2 filters, 0 user quotas, 0 directory quotas); trovan restore would send 6 requests (4 addTrustee, 2 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 0 findings
    ? 0

The issue's first document: one `</trustee>` deleted by hand. It is not well-formed: map says where
and writes nothing (no -o file is left); put back, it maps.

    $ grep -n 'y.txt' saved.xml
    > 10:<file><zid>231570942</zid><path><![CDATA[/b/y.txt]]></path>
    ? 0
    $ sed '11s#</trustee>##' saved.xml > edited.xml && trovanctl map edited.xml -o mapped.xml; echo $?; ls mapped.xml
    > 2
    2> trovanctl: edited.xml:12:3: not well-formed XML: mismatched tag (the open element is <trustee> of line 11)
    2> ls: cannot access 'mapped.xml': No such file or directory
    ? 2
    $ trovanctl map saved.xml -o mapped.xml && trovan restore VOL2 < mapped.xml && trovanctl diff saved.xml vol:VOL2
    > saved.xml -> vol:VOL2: 0 differences (0 added, 0 removed, 0 changed) in 6 and 6 entries
    ? 0

With --repair-end-tags, map puts the lost `</trustee>` back where the document shows it was
lost: before the `</file>` that found the <trustee> still open. It lists the insertion with the
place of the input, writes the document and exits 1, as for any finding; check finds nothing in
what it wrote, the saved document's own bytes.

    $ trovanctl map --repair-end-tags edited.xml -o repaired.xml; echo $?; diff saved.xml repaired.xml && trovanctl check repaired.xml
    > 1
    > repaired.xml: 6 entries (4 trustees, 2 filters, 0 user quotas, 0 directory quotas); trovan restore would send 6 requests (4 addTrustee, 2 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 0 findings
    2> trovanctl: edited.xml:12:1: inserted the missing </trustee> (the open element is <trustee> of line 11)
    ? 0

trovan restore of the edited document reads the entries after the lost end tag into the wrong
files (u1 [r] is lost, the trustee and filter of /c.txt land on /b/y.txt); of the repaired one,
each entry lands on its own path.

    $ quillsim volume add VOL4 && quillsim volume add VOL5 && for v in VOL4 VOL5; do quillsim file add $v /a.txt /b/y.txt /c.txt; done
    ? 0
    $ trovan restore VOL4 < edited.xml > /dev/null 2>&1; quillsim dump VOL4
    > volume VOL4 mount $SANDBOX/mnt/VOL4
    > T	/a.txt	A	RW		u0.corp.TREE.
    > I	/a.txt	-
    > T	/b	A	RF		u0.corp.TREE.
    > T	/b/y.txt	A	RWC		u1.corp.TREE.
    > I	/b/y.txt	S
    ? 0
    $ trovan restore VOL5 < repaired.xml > /dev/null && quillsim dump VOL5
    > volume VOL5 mount $SANDBOX/mnt/VOL5
    > T	/a.txt	A	RW		u0.corp.TREE.
    > I	/a.txt	-
    > T	/b	A	RF		u0.corp.TREE.
    > T	/b/y.txt	A	R		u1.corp.TREE.
    > T	/c.txt	A	RWC		u1.corp.TREE.
    > I	/c.txt	S
    ? 0

A lost `</name>`: the <id> after it may not stand in a <name>, so the end tag goes before it.
A lost `</file>`: the next <file> may not stand in a <file>, so the end tag goes before it (the
line left empty stays empty; map writes the canonical form).

    $ sed '11s#</name>##' saved.xml > noname.xml && trovanctl map --repair-end-tags noname.xml > out.xml; echo $?; diff saved.xml out.xml
    > 1
    2> trovanctl: noname.xml:11:29: inserted the missing </name> (the open element is <name> of line 11)
    ? 0
    $ sed '12s#</file>##' saved.xml > nofile.xml && trovanctl map --repair-end-tags nofile.xml > out.xml; echo $?; diff saved.xml out.xml
    > 1
    2> trovanctl: nofile.xml:13:1: inserted the missing </file> (the open element is <file> of line 10)
    ? 0

Without the option the same documents are refused, as before.

    $ trovanctl map noname.xml; trovanctl map nofile.xml
    2> trovanctl: noname.xml:11:29: element <id> is not allowed in <name>
    2> trovanctl: noname.xml:11:38: element <rights> is not allowed in <name>
    2> trovanctl: noname.xml:11:74: not well-formed XML: mismatched tag (the open element is <name> of line 11)
    2> trovanctl: nofile.xml:13:1: element <file> is not allowed in <file>
    2> trovanctl: nofile.xml:17:3: not well-formed XML: mismatched tag (the open element is <file> of line 10)
    ? 2

What no closing explains stays an error: a misspelt end tag (status 2, nothing written, no
-o file left).

    $ sed '11s#</trustee>#</trustees>#' saved.xml > misspelt.xml && trovanctl map --repair-end-tags misspelt.xml -o out2.xml; echo $?; ls out2.xml
    > 2
    2> trovanctl: misspelt.xml:11:81: not well-formed XML: mismatched tag (the open element is <trustee> of line 11)
    2> ls: cannot access 'out2.xml': No such file or directory
    ? 2

Markup in a CDATA section is text: the `</trustee>` in this name is not an end tag (map writes
it escaped); the lost one is still put back before `</file>`.

    $ sed '11s#<name>u1.corp.TREE.</name>#<name><![CDATA[u1</trustee>]]></name>#' edited.xml > cdata.xml && trovanctl map --repair-end-tags cdata.xml > out.xml; echo $?; grep -n '<name>u1' out.xml
    > 1
    > 11:<trustee><name>u1&lt;/trustee&gt;</name><id></id><rights value="R"><read/></rights></trustee>
    > 14:<trustee><name>u1.corp.TREE.</name><id></id><rights value="RWC"><read/><write/><create/></rights></trustee>
    2> trovanctl: cdata.xml:12:1: inserted the missing </trustee> (the open element is <trustee> of line 11)
    ? 0

The issue's second document: passed through xmllint --format (an XML declaration, and
`<inheritedRightsFilter value=""/>`). map lists what it normalised and writes the canonical form,
which trovan restore applies exactly: the restored volume saves as the original.

    $ xmllint --format saved.xml > formatted.xml && trovanctl map formatted.xml -o mapped.xml; echo $?; cat mapped.xml; trovanctl check mapped.xml
    > 1
    > <metadata>
    > <trusteeInfo>
    > <file><zid>592285195</zid><path><![CDATA[/a.txt]]></path>
    > <trustee><name>u0.corp.TREE.</name><id></id><rights value="RW"><read/><write/></rights></trustee>
    > <inheritedRightsFilter value=""></inheritedRightsFilter>
    > </file>
    > <file><zid>142484084</zid><path><![CDATA[/b]]></path>
    > <trustee><name>u0.corp.TREE.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>231570942</zid><path><![CDATA[/b/y.txt]]></path>
    > <trustee><name>u1.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > <file><zid>775244449</zid><path><![CDATA[/c.txt]]></path>
    > <trustee><name>u1.corp.TREE.</name><id></id><rights value="RWC"><read/><write/><create/></rights></trustee>
    > <inheritedRightsFilter value="S"><supervisor/></inheritedRightsFilter>
    > </file>
    > </trusteeInfo>
    > </metadata>
    > mapped.xml: 6 entries (4 trustees, 2 filters, 0 user quotas, 0 directory quotas); trovan restore would send 6 requests (4 addTrustee, 2 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 0 findings
    2> trovanctl: formatted.xml:1:1: an XML declaration: trovan restore refuses a document that does not start with <metadata>
    2> trovanctl: formatted.xml:15:7: <inheritedRightsFilter> written as an empty element with attributes: trovan restore does not see where it ends and reads the elements after it as its content
    ? 0
    $ quillsim volume add VOL3 && quillsim file add VOL3 /a.txt /b/y.txt /c.txt && trovan restore VOL3 < mapped.xml && trovanctl diff saved.xml vol:VOL3
    > saved.xml -> vol:VOL3: 0 differences (0 added, 0 removed, 0 changed) in 6 and 6 entries
    ? 0

Rules: users from a mapping file (CSV old,new), the tree replaced, paths rebased. An entry a
rule cannot map is listed and kept unchanged, or left out with --drop-unmapped (listed all the
same).

    $ printf '# old,new\nu0.corp.TREE.,u0.corp.NEW.\n"u1.corp.TREE.",S-1-5-21-1-2-3-1001\n' > users.csv && trovanctl map -U users.csv saved.xml
    > <metadata>
    > <trusteeInfo>
    > <file><zid>592285195</zid><path><![CDATA[/a.txt]]></path>
    > <trustee><name>u0.corp.NEW.</name><id></id><rights value="RW"><read/><write/></rights></trustee>
    > <inheritedRightsFilter value=""></inheritedRightsFilter>
    > </file>
    > <file><zid>142484084</zid><path><![CDATA[/b]]></path>
    > <trustee><name>u0.corp.NEW.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>231570942</zid><path><![CDATA[/b/y.txt]]></path>
    > <trustee type="adID"><name>S-1-5-21-1-2-3-1001</name><id>S-1-5-21-1-2-3-1001</id><rights value="R"><read/></rights></trustee>
    > </file>
    > <file><zid>775244449</zid><path><![CDATA[/c.txt]]></path>
    > <trustee type="adID"><name>S-1-5-21-1-2-3-1001</name><id>S-1-5-21-1-2-3-1001</id><rights value="RWC"><read/><write/><create/></rights></trustee>
    > <inheritedRightsFilter value="S"><supervisor/></inheritedRightsFilter>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
    $ trovanctl map -t NEW -r /b=/new saved.xml
    > <metadata>
    > <trusteeInfo>
    > <file><zid>592285195</zid><path><![CDATA[/a.txt]]></path>
    > <trustee><name>u0.corp.TREE.</name><id></id><rights value="RW"><read/><write/></rights></trustee>
    > <inheritedRightsFilter value=""></inheritedRightsFilter>
    > </file>
    > <file><zid>142484084</zid><path><![CDATA[/new]]></path>
    > <trustee><name>u0.corp.NEW.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>231570942</zid><path><![CDATA[/new/y.txt]]></path>
    > <trustee><name>u1.corp.NEW.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > <file><zid>775244449</zid><path><![CDATA[/c.txt]]></path>
    > <trustee><name>u1.corp.TREE.</name><id></id><rights value="RWC"><read/><write/><create/></rights></trustee>
    > <inheritedRightsFilter value="S"><supervisor/></inheritedRightsFilter>
    > </file>
    > </trusteeInfo>
    > </metadata>
    2> trovanctl: saved.xml:4:1: trustee /a.txt u0.corp.TREE.: the path /a.txt is under no -r OLD; kept unchanged
    2> trovanctl: saved.xml:5:1: inherited rights filter /a.txt: the path /a.txt is under no -r OLD; kept unchanged
    2> trovanctl: saved.xml:14:1: trustee /c.txt u1.corp.TREE.: the path /c.txt is under no -r OLD; kept unchanged
    2> trovanctl: saved.xml:15:1: inherited rights filter /c.txt: the path /c.txt is under no -r OLD; kept unchanged
    ? 1
    $ trovanctl map -t NEW -r /b=/new --drop-unmapped saved.xml
    > <metadata>
    > <trusteeInfo>
    > <file><zid>142484084</zid><path><![CDATA[/new]]></path>
    > <trustee><name>u0.corp.NEW.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>231570942</zid><path><![CDATA[/new/y.txt]]></path>
    > <trustee><name>u1.corp.NEW.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    2> trovanctl: saved.xml:4:1: trustee /a.txt u0.corp.TREE.: the path /a.txt is under no -r OLD; left out
    2> trovanctl: saved.xml:5:1: inherited rights filter /a.txt: the path /a.txt is under no -r OLD; left out
    2> trovanctl: saved.xml:14:1: trustee /c.txt u1.corp.TREE.: the path /c.txt is under no -r OLD; left out
    2> trovanctl: saved.xml:15:1: inherited rights filter /c.txt: the path /c.txt is under no -r OLD; left out
    ? 1
    $ trovanctl map --path /b --kind trustee saved.xml
    > <metadata>
    > <trusteeInfo>
    > <file><zid>142484084</zid><path><![CDATA[/b]]></path>
    > <trustee><name>u0.corp.TREE.</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > <file><zid>231570942</zid><path><![CDATA[/b/y.txt]]></path>
    > <trustee><name>u1.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0

A quota document: user quotas and directory quotas keep their own forms.

    $ quillsim quota user VOL1 u0.corp.TREE. 1000 && quillsim quota dir VOL1 /b 2000 && trovan save VOL1 -m ud > quotas.xml && trovanctl map -U users.csv -r /b=/new quotas.xml
    > <metadata>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>u0.corp.NEW.</name></user>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>142484084</zid><path>\new</path><spaceUsed>0</spaceUsed><quotaAmount>2000</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0

--kind names the quota kinds user-quota and dir-quota, and takes their JSON spellings too;
the sections stay, as trovan save writes them.

    $ trovanctl map --kind dir-quota quotas.xml
    > <metadata>
    > <userInfo>
    > </userInfo>
    > <dirInfo>
    > <directory><zid>142484084</zid><path>\b</path><spaceUsed>0</spaceUsed><quotaAmount>2000</quotaAmount></directory>
    > </dirInfo>
    > </metadata>
    ? 0
    $ trovanctl map --kind userQuota quotas.xml
    > <metadata>
    > <userInfo>
    > <user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount><name>u0.corp.TREE.</name></user>
    > </userInfo>
    > <dirInfo>
    > </dirInfo>
    > </metadata>
    ? 0

Trouble: a mapping file that is not well formed, a rule without '=', a missing document.

    $ printf 'a,b,c\n' > bad.csv && trovanctl map -U bad.csv saved.xml
    2> trovanctl: bad.csv:1:4: more than two fields: old,new
    ? 2
    $ printf 'a\n' > bad.csv && trovanctl map -U bad.csv saved.xml
    2> trovanctl: bad.csv:1:2: a rule needs two fields: old,new
    ? 2
    $ printf '"a,b\n' > bad.csv && trovanctl map -U bad.csv saved.xml
    2> trovanctl: bad.csv:1:5: a quoted field without its closing '"'
    ? 2
    $ printf 'a,b\na,c\n' > bad.csv && trovanctl map -U bad.csv saved.xml
    2> trovanctl: bad.csv:2:1: a second rule for a
    ? 2
    $ trovanctl map -r /b saved.xml
    2> trovanctl: map: -r wants OLD=NEW, not /b
    ? 2
    $ trovanctl map missing.xml
    2> trovanctl: missing.xml: No such file or directory
    ? 2
