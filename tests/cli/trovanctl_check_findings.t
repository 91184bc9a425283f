Each kind of finding of trovanctl check, with its line and column, one a line, sorted by line;
the summary last. Findings make the status 1.

Unknown and misplaced elements, a root that is not <metadata>, text where only elements belong,
and attributes trovan does not know. Nothing inside an element that is not accepted is judged.

    $ cat > elements.xml
    < <metadata>
    < <trusteeInfo>
    < <file><zid>1</zid><path><![CDATA[/a]]></path><owner>x</owner>
    < <trustee type="AD" x="1"><name>u.T.</name><id></id><rights><read/></rights></trustee>
    < </file>
    < <user><name>u.T.</name><quotaAmount>5</quotaAmount></user>
    < stray text
    < </trusteeInfo>
    < <quotas><foo/></quotas>
    < </metadata>
    ? 0
    $ trovanctl check elements.xml
    > trovanctl: elements.xml:3:46: unknown element <owner> in <file>
    > trovanctl: elements.xml:4:1: type="AD" on <trustee>: only type="adID" is known
    > trovanctl: elements.xml:4:1: unknown attribute x on <trustee>
    > trovanctl: elements.xml:6:1: element <user> is not allowed in <trusteeInfo>
    > trovanctl: elements.xml:7:1: text in <trusteeInfo>, where only elements belong
    > trovanctl: elements.xml:9:1: unknown element <quotas> in <metadata>
    > elements.xml: 1 entry (1 trustee, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 1 request (1 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 6 findings
    ? 1
    $ printf '<trusteeInfo></trusteeInfo>\n' > root.xml && trovanctl check root.xml
    > trovanctl: root.xml:1:1: the root element is <trusteeInfo>, not <metadata>
    > trovanctl: root.xml:2:1: trovan restore would stop with status 255
    > root.xml: 0 entries (0 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 0 requests (0 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 2 findings
    ? 1

Entries outside a file or before the path of their file, and a file without a path.

    $ cat > places.xml
    < <metadata><trusteeInfo>
    < <trustee><name>u.T.</name></trustee>
    < <file><zid>2</zid>
    < <inheritedRightsFilter value="S"><supervisor/></inheritedRightsFilter>
    < <path><![CDATA[/b]]></path>
    < </file>
    < <file><zid>3</zid></file>
    < </trusteeInfo></metadata>
    ? 0
    $ trovanctl check places.xml
    > trovanctl: places.xml:2:1: <trustee> outside a <file> (in <trusteeInfo>)
    > trovanctl: places.xml:4:1: <inheritedRightsFilter> before the <path> of its <file>
    > trovanctl: places.xml:7:1: <file> without a <path>
    > places.xml: 0 entries (0 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 0 requests (0 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 3 findings
    ? 1

Rights outside the rights table (names are case-sensitive), quota amounts that are not numbers,
and entries that miss what trovan restore needs: a trustee without a name stops the whole
restore; a quota without its name, path or amount is skipped.

    $ cat > values.xml
    < <metadata><trusteeInfo><file><path><![CDATA[/a]]></path>
    < <trustee><name>u.T.</name><rights><read/><Write/><delete/></rights></trustee>
    < <trustee><name></name><rights><read/></rights></trustee>
    < <trustee type="adID"><name>ann</name><id></id></trustee>
    < </file></trusteeInfo><userInfo>
    < <user><name>a.T.</name><quotaAmount>10 MB</quotaAmount></user>
    < <user><name>b.T.</name><quotaAmount>-1</quotaAmount></user>
    < <user><name>c.T.</name><quotaAmount>9223372036854775808</quotaAmount></user>
    < <user><quotaAmount>5</quotaAmount></user>
    < </userInfo><dirInfo>
    < <directory><path>\q</path></directory>
    < <directory><quotaAmount>5</quotaAmount></directory>
    < </dirInfo></metadata>
    ? 0
    $ trovanctl check values.xml
    > trovanctl: values.xml:2:1: trovan restore would send this trustee of u.T. on /mnt/VOLUME/a with rights [r] and elements that are not rights, not [r]
    > trovanctl: values.xml:2:42: <Write> is not a right in <rights>
    > trovanctl: values.xml:2:50: <delete> is not a right in <rights>
    > trovanctl: values.xml:3:1: trustee without a <name>: trovan restore stops there
    > trovanctl: values.xml:4:1: AD trustee without an <id>: trovan restore stops there
    > trovanctl: values.xml:6:1: trovan restore would stop with status 255 before this entry: nothing is sent for it or the 2 entries after it
    > trovanctl: values.xml:6:24: quota amount "10 MB" is not a whole number from 0 to 9223372036854775807
    > trovanctl: values.xml:7:24: quota amount "-1" is not a whole number from 0 to 9223372036854775807
    > trovanctl: values.xml:8:24: quota amount "9223372036854775808" is not a whole number from 0 to 9223372036854775807
    > trovanctl: values.xml:9:1: <user> without a <name>: trovan restore skips it
    > trovanctl: values.xml:11:1: <directory> without a <quotaAmount>: trovan restore skips it
    > trovanctl: values.xml:12:1: <directory> without a <path>: trovan restore skips it
    > values.xml: 4 entries (1 trustee, 0 filters, 3 user quotas, 0 directory quotas); trovan restore would send 1 request (1 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 12 findings
    ? 1

The same entry twice (the last one wins on the volume): a trustee is its path and its user, a
filter its path, a user quota its user (an AD user by SID), a directory quota its path, with `\`
and `/` compared as one. The same user on another path, or another user on the same path, is
another entry.

    $ cat > twice.xml
    < <metadata><trusteeInfo>
    < <file><path><![CDATA[/a]]></path><trustee><name>u.T.</name><rights><read/></rights></trustee></file>
    < <file><path><![CDATA[/a]]></path><trustee><name>u.T.</name><rights><write/></rights></trustee></file>
    < <file><path><![CDATA[/a]]></path><trustee><name>v.T.</name></trustee></file>
    < <file><path><![CDATA[/b]]></path><trustee><name>u.T.</name></trustee><inheritedRightsFilter/><inheritedRightsFilter/></file>
    < </trusteeInfo><userInfo>
    < <user type="adID"><id>S-1-5-21-7</id><quotaAmount>1</quotaAmount><name>ann</name></user>
    < <user type="adID"><id>S-1-5-21-7</id><quotaAmount>2</quotaAmount><name>ann2</name></user>
    < </userInfo><dirInfo>
    < <directory><path>\q\sub</path><quotaAmount>1</quotaAmount></directory>
    < <directory><path>/q/sub</path><quotaAmount>2</quotaAmount></directory>
    < </dirInfo></metadata>
    ? 0
    $ trovanctl check twice.xml
    > trovanctl: twice.xml:3:34: the same trustee as on line 2
    > trovanctl: twice.xml:5:94: the same inherited rights filter as on line 5
    > trovanctl: twice.xml:8:1: the same user quota as on line 7
    > trovanctl: twice.xml:11:1: the same directory quota as on line 10
    > twice.xml: 10 entries (4 trustees, 2 filters, 2 user quotas, 2 directory quotas); trovan restore would send 10 requests (4 addTrustee, 2 modifyInheritedRightsFilter, 2 userSpaceRestrictions, 2 addQuota); 4 findings
    ? 1

Comments, processing instructions and the XML declaration are read by trovan restore as tags. A
document type declaration is never part of a Metadata document: reading stops there.

    $ printf '<?xml version="1.0"?>\n<metadata><!-- saved by hand --><?app x?></metadata>\n' > markup.xml && trovanctl check markup.xml
    > trovanctl: markup.xml:1:1: an XML declaration: trovan restore refuses a document that does not start with <metadata>
    > trovanctl: markup.xml:2:11: a comment: trovan restore reads it as a tag
    > trovanctl: markup.xml:2:33: a processing instruction: trovan restore reads it as a tag
    > trovanctl: markup.xml:3:1: trovan restore would stop with status 255
    > markup.xml: 0 entries (0 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 0 requests (0 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 4 findings
    ? 1
    $ printf '<!DOCTYPE metadata [<!ENTITY x "y">]>\n<metadata>&x;</metadata>\n' > doctype.xml && trovanctl check doctype.xml
    > trovanctl: doctype.xml:1:20: a document type declaration, which a Metadata document never holds; reading stops here
    > trovanctl: doctype.xml:1:20: trovan restore would stop with status 255
    > doctype.xml: 0 entries (0 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 0 requests (0 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 2 findings
    ? 1

A document cut short, and one that is empty.

    $ head -c 60 twice.xml > cut.xml && trovanctl check cut.xml
    > trovanctl: cut.xml:2:34: not well-formed XML: unclosed token
    > trovanctl: cut.xml:2:34: trovan restore would end with status 157 here: the document ends before </metadata>
    > cut.xml: 0 entries (0 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 0 requests (0 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 2 findings
    ? 1
    $ : > empty.xml && trovanctl check empty.xml
    > trovanctl: empty.xml:1:1: the document holds no element
    > trovanctl: empty.xml:1:1: trovan restore would stop with status 255
    > empty.xml: 0 entries (0 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 0 requests (0 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 2 findings
    ? 1

Findings in JSON Lines: one object a finding, the summary last.

    $ trovanctl check --json places.xml
    > {"type":"finding","file":"places.xml","line":2,"column":1,"code":"entry-outside-file","message":"<trustee> outside a <file> (in <trusteeInfo>)"}
    > {"type":"finding","file":"places.xml","line":4,"column":1,"code":"entry-before-path","message":"<inheritedRightsFilter> before the <path> of its <file>"}
    > {"type":"finding","file":"places.xml","line":7,"column":1,"code":"missing-path","message":"<file> without a <path>"}
    > {"type":"summary","file":"places.xml","entries":{"trustee":0,"filter":0,"userQuota":0,"dirQuota":0,"total":0},"requests":{"addTrustee":0,"modifyInheritedRightsFilter":0,"userSpaceRestrictions":0,"addQuota":0,"total":0},"compared":true,"findings":3}
    ? 1
