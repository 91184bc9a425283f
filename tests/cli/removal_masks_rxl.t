With -n the trustees come from the RXL trustee file, and "rt" and "a" then remove nothing, though
the volume has an invalid trustee. (Mask "r" alone with -n does remove: see removal_masks.t.)

    $ quillsim volume add VOL1
    ? 0
    $ quillsim file add VOL1 /docs/a.txt
    ? 0
    $ quillsim user add bob.corp.TREE.
    ? 0
    $ quillsim trustee add VOL1 /docs/a.txt bob.corp.TREE. rf
    ? 0
    $ quillsim trustee add VOL1 /docs/a.txt 'Unknown(21350)' rf
    ? 0
    $ quillsim quota user VOL1 bob.corp.TREE. 1000
    ? 0
    $ quillsim quota dir VOL1 /docs 5000
    ? 0
    $ quillsim rxl trustee VOL1 /docs/a.txt bob.corp.TREE. RF 175402c6-687f-0c90-3bd4-264a284a3efa
    ? 0

The trustee section is the RXL trustee file's, and no request is sent.

    $ trovan save VOL1 -m rt -n
    > <metadata>
    > <trusteeInfo>
    > <file>
    > <zid></zid><path>/docs/a.txt</path>
    > <trustee><name>bob.corp.TREE.</name><id>175402c6-687f-0c90-3bd4-264a284a3efa</id><rights value="rf"><read/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo></metadata>
    ? 0
    $ quillsim log
    ? 0
    $ trovan save VOL1 -m a -n >/dev/null && quillsim log
    ? 0
