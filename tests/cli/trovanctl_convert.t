trovanctl convert: a legacy TRUSTEE.KXM report to a canonical Metadata document holding the
entries trovan restore -w converts, in its order, read by trovan's own line and field code.

The report of the legacy tests: a trustee with an `X` (no right letter), ATTR and OWNER lines, a
line with three value fields, a path without a volume, and an IRM line with three fields. Lines
trovan would pass over or change are listed, with their line in the report; the status is 1.

    $ cp $DATA/data/legacy_report.txt report.txt
    ? 0
    $ trovanctl convert -t CORP report.txt > first.xml; echo $?; awk '{ printf "%6d\t%s\n", NR, $0 }' first.xml
    > 1
    >      1	<metadata>
    >      2	<trusteeInfo>
    >      3	<file><zid></zid><path><![CDATA[/HOME/JDOE]]></path>
    >      4	<trustee><name>JDOE.SALES.CORP</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    >      5	</file>
    >      6	<file><zid></zid><path><![CDATA[/HOME]]></path>
    >      7	<inheritedRightsFilter value="RFS"><read/><fileScan/><supervisor/></inheritedRightsFilter>
    >      8	</file>
    >      9	</trusteeInfo>
    >     10	<dirInfo>
    >     11	<directory><zid></zid><path>\SHARED</path><spaceUsed>2048</spaceUsed><quotaAmount>1048576</quotaAmount></directory>
    >     12	</dirInfo>
    >     13	<userInfo>
    >     14	<user><id></id><spaceUsed></spaceUsed><quotaAmount>512000</quotaAmount><name>JDOE.SALES.CORP</name></user>
    >     15	</userInfo>
    >     16	<trusteeInfo>
    >     17	<file><zid></zid><path><![CDATA[APPS/TOOLS]]></path>
    >     18	<trustee><name>[Public]</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    >     19	</file>
    >     20	</trusteeInfo>
    >     21	</metadata>
    2> trovanctl: report.txt:2:1: 'X' is not a right letter; trovan restore -w leaves it out
    2> trovanctl: report.txt:6:1: fewer than four value fields; trovan restore -w passes the line over
    2> trovanctl: report.txt:10:1: path "APPS/TOOLS" without a leading '/': give -r PREFIX
    2> trovanctl: report.txt:11:1: fewer than four value fields; trovan restore -w passes the line over
    ? 0

The same with -r: the path without a volume gets the prefix; written to a file.

    $ trovanctl convert -t CORP -r data -o converted.xml report.txt
    2> trovanctl: report.txt:2:1: 'X' is not a right letter; trovan restore -w leaves it out
    2> trovanctl: report.txt:6:1: fewer than four value fields; trovan restore -w passes the line over
    2> trovanctl: report.txt:11:1: fewer than four value fields; trovan restore -w passes the line over
    ? 1
    $ trovanctl check converted.xml
    > converted.xml: 5 entries (2 trustees, 1 filter, 1 user quota, 1 directory quota); trovan restore would send 5 requests (2 addTrustee, 1 modifyInheritedRightsFilter, 1 userSpaceRestrictions, 1 addQuota); 0 findings
    ? 0

--raw writes the very document trovan restore -w makes, by trovan's own conversion (the lines
listed are the same).

    $ trovanctl convert --raw -t CORP < report.txt
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/HOME/JDOE</path>
    > <trustee><name>JDOE.SALES.CORP</name><id></id><rights value="RWFX"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/HOME</path>
    > <inheritedRightsFilter value="SRF"><supervisor/><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > </trusteeInfo>
    > <dirInfo>
    > <directory><zid></zid><path>/SHARED</path><spaceUsed>2048</spaceUsed><quotaAmount>1048576</quotaAmount></directory>
    > </dirInfo>
    > <userInfo>
    > <user><id></id><spaceUsed></spaceUsed><quotaAmount>512000</quotaAmount>
    > <name>JDOE.SALES.CORP</name>
    > <idNotFound><time><utc>0</utc><string>Invalid UTC Time</string></time><numberOfTimes>0</numberOfTimes></idNotFound></user>
    > </userInfo>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>APPS/TOOLS</path>
    > <trustee><name>[Public]</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    >! </metadata>
    2> trovanctl: (standard input):2:1: 'X' is not a right letter; trovan restore -w leaves it out
    2> trovanctl: (standard input):6:1: fewer than four value fields; trovan restore -w passes the line over
    2> trovanctl: (standard input):10:1: path "APPS/TOOLS" without a leading '/': give -r PREFIX
    2> trovanctl: (standard input):11:1: fewer than four value fields; trovan restore -w passes the line over
    ? 1

Values that trovan's conversion leaves unescaped: the canonical document escapes them, and check
finds nothing in it. In the --raw document the first bare `&` is not well-formed XML: check
names that entry's line, and what trovan restore would still send past it.

    $ printf 'TRUSTEE.KXM\n"TRUSTEE","VOL1:\\R&D","x","JDOE","RW"\n"TRUSTEE","VOL1:\\PLAIN","x","JDOE","RW"\n"TRUSTEE","VOL1:\\A<B","x","ANN","R"\n' > amp.txt
    ? 0
    $ trovanctl convert -t CORP amp.txt > amp.xml && cat amp.xml && trovanctl check amp.xml
    > <metadata>
    > <trusteeInfo>
    > <file><zid></zid><path><![CDATA[/R&D]]></path>
    > <trustee><name>JDOE.CORP</name><id></id><rights value="RW"><read/><write/></rights></trustee>
    > </file>
    > <file><zid></zid><path><![CDATA[/PLAIN]]></path>
    > <trustee><name>JDOE.CORP</name><id></id><rights value="RW"><read/><write/></rights></trustee>
    > </file>
    > <file><zid></zid><path><![CDATA[/A<B]]></path>
    > <trustee><name>ANN.CORP</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    > amp.xml: 3 entries (3 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 3 requests (3 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 0 findings
    ? 0
    $ trovanctl convert --raw -t CORP amp.txt > amp-raw.xml; cat amp-raw.xml; trovanctl check amp-raw.xml
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/R&D</path>
    > <trustee><name>JDOE.CORP</name><id></id><rights value="RW"><read/><write/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/PLAIN</path>
    > <trustee><name>JDOE.CORP</name><id></id><rights value="RW"><read/><write/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/A<B</path>
    > <trustee><name>ANN.CORP</name><id></id><rights value="R"><read/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>trovanctl: amp-raw.xml:4:22: not well-formed XML: not well-formed (invalid token)
    > trovanctl: amp-raw.xml:4:22: past the point where the document stops being XML, trovan restore would still send this trustee of JDOE.CORP on /mnt/VOLUME/R&D [rw]
    > trovanctl: amp-raw.xml:4:22: past the point where the document stops being XML, trovan restore would still send this trustee of JDOE.CORP on /mnt/VOLUME/PLAIN [rw]
    > trovanctl: amp-raw.xml:4:22: trovan restore would end with status 157 here: the document ends before </metadata>
    > amp-raw.xml: 0 entries (0 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 2 requests (2 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 4 findings
    ? 1

A --raw document of a report without them: check finds nothing.

    $ printf 'TRUSTEE.KXM\n"TRUSTEE","VOL1:\\PLAIN","x","JDOE","RW"\n"IRM","VOL1:\\PLAIN","x","S","y"\n' > plain.txt && trovanctl convert --raw -t CORP plain.txt > plain-raw.xml && trovanctl check plain-raw.xml
    > plain-raw.xml: 2 entries (1 trustee, 1 filter, 0 user quotas, 0 directory quotas); trovan restore would send 2 requests (1 addTrustee, 1 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 0 findings
    ? 0

A UTF-8 byte-order mark, and UTF-16 in either byte order, are read; trovan restore -w refuses
them.

    $ printf '\xef\xbb\xbfTRUSTEE.KXM\n"TRUSTEE","VOL1:\\HOME","x","J\xc3\x96RG","RW"\n' > bom.txt && trovanctl convert -t CORP bom.txt
    > <metadata>
    > <trusteeInfo>
    > <file><zid></zid><path><![CDATA[/HOME]]></path>
    > <trustee><name>JÖRG.CORP</name><id></id><rights value="RW"><read/><write/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
    $ printf 'TRUSTEE.KXM\r\n"TRUSTEE","VOL1:\\HOME","x","J\xc3\x96RG","RW"\r\n' | iconv -f UTF-8 -t UTF-16 > utf16.txt && head -c 2 utf16.txt | od -An -tx1 && trovanctl convert -t CORP utf16.txt
    >  ff fe
    > <metadata>
    > <trusteeInfo>
    > <file><zid></zid><path><![CDATA[/HOME]]></path>
    > <trustee><name>JÖRG.CORP</name><id></id><rights value="RW"><read/><write/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
    $ printf 'TRUSTEE.KXM\r\n"TRUSTEE","VOL1:\\HOME","x","J\xc3\x96RG","RW"\r\n' | iconv -f UTF-8 -t UTF-16BE | { printf '\xfe\xff'; cat; } > utf16be.txt && trovanctl convert -t CORP utf16be.txt
    > <metadata>
    > <trusteeInfo>
    > <file><zid></zid><path><![CDATA[/HOME]]></path>
    > <trustee><name>JÖRG.CORP</name><id></id><rights value="RW"><read/><write/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > </metadata>
    ? 0
    $ quillsim volume add VOL1 && trovan restore VOL1 -w -t CORP < bom.txt
    2> Invalid input file
    2> Unable to read input file.
    ? 22
    $ quillsim log --leaks | sed -n 's/^trovan\[[0-9]*\]: temporary file \(.*\) left behind$/\1/p' > left; xargs -r rm -f -- < left
    ? 0

Trouble: no header, text that is not UTF-8, broken UTF-16, a missing tree, a missing file; with
-o nothing is written.

    $ printf 'LISTING\n"TRUSTEE","VOL1:\\HOME","x","J","RW"\n' | trovanctl convert -t CORP -o out.xml; ls out.xml
    2> trovanctl: (standard input): not a TRUSTEE.KXM report (its first line must begin with TRUSTEE.KXM)
    2> ls: cannot access 'out.xml': No such file or directory
    ? 2
    $ printf 'TRUSTEE.KXM\n"TRUSTEE","VOL1:\\HOME","x","J\xd6RG","RW"\n' | trovanctl convert -t CORP -o out.xml; ls out.xml
    2> trovanctl: (standard input):2:1: text that is not UTF-8; convert the report to UTF-8 (or UTF-16) first
    2> ls: cannot access 'out.xml': No such file or directory
    ? 2
    $ printf '\xff\xfeT\x00\x00\xd8' | trovanctl convert -t CORP
    2> trovanctl: (standard input): UTF-16 text ends inside a character (line 1)
    ? 2
    $ trovanctl convert report.txt
    2> trovanctl: --tree is required
    2> Try 'trovanctl convert --help' for more information.
    ? 2
    $ trovanctl convert -t CORP missing.txt
    2> trovanctl: missing.txt: No such file or directory
    ? 2
