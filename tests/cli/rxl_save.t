Save in RXL mode (-n): the trustee section comes from the file-sharing server's RXL trustee file
<mount point>/._KESTREL/.trustee_database.xml instead of the volume's TrusteeInfo.xml. Each
trustee or filter entry becomes one file record; the section's closing tag goes out without its
line end.

    $ quillsim volume add VOL1 && quillsim dir add VOL1 /home /homework /data/home
    ? 0

A volume without an RXL trustee file cannot be saved this way.

    $ trovan save VOL1 -n
    2> Unable to find the RXL trustee file for this volume.
    ? 22

A hand-written file, with one entry spread over five lines and others on one line each.

    $ quillsim rxl raw VOL1 $DATA/data/rxl_trustee_file.xml
    ? 0
    $ trovan save VOL1 -n -m t
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/home/a</path>
    > <trustee><name>ann.sales.corp</name><id>0123abcd-0000-1111-2222-333344445555</id><rights value="rwf"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > <file>
    > <zid></zid><path>/homework</path>
    > <trustee><name>bob.corp</name><id>11111111-2222-3333-4444-555555555555</id><rights value="r"><read/></rights></trustee>
    > </file>
    > <file>
    > <zid></zid><path>/data/home</path>
    > <inheritedRightsFilter value="srwcemfa"><supervisor/><read/><write/><create/><erase/><modify/><fileScan/><accessControl/></inheritedRightsFilter>
    > </file>
    > <file>
    > <zid></zid><path>/home</path>
    > <inheritedRightsFilter value="rf"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > </trusteeInfo></metadata>
    ? 0

-p keeps the entries whose path begins with the given path: /homework too, /data/home not.

    $ trovan save VOL1 -n -m t -p /home
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/home/a</path>
    > <trustee><name>ann.sales.corp</name><id>0123abcd-0000-1111-2222-333344445555</id><rights value="rwf"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > <file>
    > <zid></zid><path>/homework</path>
    > <trustee><name>bob.corp</name><id>11111111-2222-3333-4444-555555555555</id><rights value="r"><read/></rights></trustee>
    > </file>
    > <file>
    > <zid></zid><path>/home</path>
    > <inheritedRightsFilter value="rf"><read/><fileScan/></inheritedRightsFilter>
    > </file>
    > </trusteeInfo></metadata>
    ? 0

With every kind of metadata the quota sections follow from the info files, and the trustees of
the RXL file are not checked for removal: no request goes to the file system.

    $ trovan save VOL1 -n -m a | sed -n '/<.trusteeInfo>/,$p'
    > </trusteeInfo><userInfo>
    > </userInfo>
    > <dirInfo>
    > </dirInfo>
    > </metadata>
    ? 0
    $ quillsim log
    ? 0

A parse error is reported and skips the rest of its block (the file is scanned in blocks of
whole lines of up to 8,192 bytes), but the scanner's state has already moved on: the next block
is taken up where the damaged entry stood, so here the next identifier and closing tag complete
the damaged trustee, with no rights. The save goes on and succeeds. Letters that are no rights
are reported one by one.

    $ printf '<?xml version="1.0"?>\n<volume_trustees>\n<trustee path="/a"><name>a.corp</name><rights>RWFRWFRWFRWFRWFRWFRWFRWFRWFRWFRWF</rights><object_guid>1</object_guid></trustee>\n' > damaged.xml && printf '%9000s' '' >> damaged.xml && printf '\n<trustee path="/c"><name>c.corp</name><rights>W</rights><object_guid>3</object_guid></trustee>\n<inherited_rights_mask path="/b"><rights>Rx</rights></inherited_rights_mask>\n</volume_trustees>\n' >> damaged.xml && quillsim rxl raw VOL1 damaged.xml
    ? 0
    $ trovan save VOL1 -n -m t
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/a</path>
    > <trustee><name>a.corp</name><id>3</id><rights value=""></rights></trustee>
    > </file>
    > <file>
    > <zid></zid><path>/b</path>
    > <inheritedRightsFilter value="r"><read/></inheritedRightsFilter>
    > </file>
    > </trusteeInfo></metadata>
    2> XML parsing error in RXL trustee file: Rights entry too long.
    2> Ignoring "x" during rights conversion
    ? 0

A file that holds no entry gives an empty section, with one message for the declaration and
the root element that stand where an entry was expected.

    $ printf '<?xml version="1.0"?>\n<volume_trustees>\n</volume_trustees>\n' > empty.xml && quillsim rxl raw VOL1 empty.xml
    ? 0
    $ trovan save VOL1 -n -m t
    > <metadata>
    > <trusteeInfo>
    > </trusteeInfo></metadata>
    2> XML parsing error in RXL trustee file: Did not find <trustee path=" or <inherited_rights_mask path=".
    ? 0

A line longer than 32,768 bytes ends the import with -2 (status 254); the closing tag of the
section is still written, the document's is not.

    $ { printf '<volume_trustees>\n<trustee path="/a"><name>a</name><rights>R</rights><object_guid>1</object_guid></trustee>\n'; printf '%32768s' ''; printf '\n</volume_trustees>\n'; } > long.xml && quillsim rxl raw VOL1 long.xml
    ? 0
    $ trovan save VOL1 -n -m t
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/a</path>
    > <trustee><name>a</name><id>1</id><rights value="r"><read/></rights></trustee>
    > </file>
    >! </trusteeInfo>
    2> Saved line that was too long to process
    2> An error has caused early termination. ccode=-2
    ? 254
