A round trip through the file-sharing server: a document restored in RXL mode lands in the
server's RXL trustee file, a save in RXL mode gives it back as records with the server's
identifiers, and restoring that output into a second volume and saving again gives the same
section.

    $ quillsim volume add VOL1 && quillsim volume add VOL2
    ? 0
    $ printf '<metadata>\n<trusteeInfo>\n<file><zid></zid><path><![CDATA[/docs]]></path>\n<inheritedRightsFilter value="S"><supervisor/></inheritedRightsFilter>\n<trustee><name>.cn=admin.ou=it.o=corp</name><id></id><rights value="RWCEMFA"><read/><write/><create/><erase/><modify/><fileScan/><accessControl/></rights></trustee>\n</file>\n<file><zid></zid><path>/docs/x y/report.txt</path>\n<trustee><name>bob.corp</name><id></id><rights value="RF"><read/><fileScan/></rights></trustee>\n</file>\n</trusteeInfo>\n</metadata>\n' > doc.xml
    ? 0
    $ trovan restore VOL1 -n < doc.xml && trovan save VOL1 -n -m t > s1.xml && cat s1.xml
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/docs</path>
    > <inheritedRightsFilter value="s"><supervisor/></inheritedRightsFilter>
    > </file>
    > <file>
    > <zid></zid><path>/docs</path>
    > <trustee><name>admin.it.corp</name><id>2dae4883-01e0-2d41-a1f9-38f036f09ed3</id><rights value="rwcemfa"><read/><write/><create/><erase/><modify/><fileScan/><accessControl/></rights></trustee>
    > </file>
    > <file>
    > <zid></zid><path>/docs/x y/report.txt</path>
    > <trustee><name>bob.corp</name><id>3522a73a-605b-1953-02e8-1c511e51060e</id><rights value="rf"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo></metadata>
    ? 0
    $ trovan restore VOL2 -n -a < s1.xml
    > Restoring trustees
    > Inherited rights filter added to VOL2:/docs with rights [s].
    > Trustee admin.it.corp added to VOL2:/docs with rights [rwcemfa].
    > Trustee bob.corp added to VOL2:/docs/x y/report.txt with rights [rf].
    > Restoring trustees - completed
    ? 0
    $ trovan save VOL2 -n -m t > s2.xml && cmp s1.xml s2.xml
    ? 0
