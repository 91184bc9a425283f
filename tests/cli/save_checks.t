Before a save starts, the run driver checks the volume's info files, the RXL trustee file with
-n, and the -p path. A mask letter that is no metadata type is used below to stop each run right
after the checks, so that what is checked stands alone.

    $ quillsim volume add VOL1 && quillsim dir add VOL1 /test1 /test1/sub
    ? 0

A volume without info files is not saved.

    $ trovan save NOVOL
    2> Unable to find the info file for this volume.
    2> The volume may not be found or QUILL may not be running
    ? 22

The action word is compared without regard to case.

    $ trovan SAVE NOVOL
    2> Unable to find the info file for this volume.
    2> The volume may not be found or QUILL may not be running
    ? 22
    $ trovan SaVe VOL1 -m x
    2> Unknown metadata type in the mask: x
    ? 255

The user type is checked after the volume.

    $ trovan save NOVOL -u AD
    2> Unable to find the info file for this volume.
    2> The volume may not be found or QUILL may not be running
    ? 22
    $ trovan save VOL1 -u AD
    2> Unknown user type : AD
    ? 255

The -p path must exist below the volume's mount point. A relative path gets a leading slash and
loses one trailing slash; the message shows the mount point and the path joined by a slash.

    $ trovan save VOL1 -p nothere -m x
    2> Invalid path specified: [$SANDBOX/mnt/VOL1//nothere]
    ? 22
    $ trovan save VOL1 --path=nothere/ -m x
    2> Invalid path specified: [$SANDBOX/mnt/VOL1//nothere]
    ? 22
    $ trovan save VOL1 -p test1/ -m x
    2> Unknown metadata type in the mask: x
    ? 255
    $ trovan save VOL1 -p /test1/sub -m x
    2> Unknown metadata type in the mask: x
    ? 255
    $ trovan save VOL1 -p / -m x
    2> Unknown metadata type in the mask: x
    ? 255

A later -p replaces an earlier one.

    $ trovan save VOL1 -p test1 -p nothere -m x
    2> Invalid path specified: [$SANDBOX/mnt/VOL1//nothere]
    ? 22

Every mount-table entry whose device is the volume's name is checked; entries of other devices
are not, and a volume without entries is not checked at all.

    $ mkdir -p other && printf 'VOL1 %s/mnt/VOL1 quillvol rw,name=VOL1 0 0\nVOL1 %s/other quillvol rw 0 0\nVOL2 /nonexistent quillvol rw 0 0\n' "$PWD" "$PWD" > etc/mtab
    ? 0
    $ trovan save VOL1 -p test1 -m x
    2> Invalid path specified: [$SANDBOX/other//test1]
    ? 22
    $ printf 'VOL9 %s/mnt/VOL1 quillvol rw,name=VOL1 0 0\n' "$PWD" > etc/mtab
    ? 0
    $ trovan save VOL1 -p nothere -m x
    2> Unknown metadata type in the mask: x
    ? 255

With -n the RXL trustee file must be there, under the volume's mount point.

    $ printf 'VOL1 %s/mnt/VOL1 quillvol rw,name=VOL1 0 0\n' "$PWD" > etc/mtab
    ? 0
    $ trovan save VOL1 -n -m x
    2> Unable to find the RXL trustee file for this volume.
    ? 22
    $ mkdir -p mnt/VOL1/._KESTREL && : > mnt/VOL1/._KESTREL/.trustee_database.xml
    ? 0
    $ trovan save VOL1 -n -m x
    2> Unknown metadata type in the mask: x
    ? 255

-u ad before -n passes the parsing, unlike -n before -u ad.

    $ trovan save VOL1 -u ad -n -m x
    2> Unknown metadata type in the mask: x
    ? 255
    $ trovan save VOL1 -n -u ad -m x
    2> Option '-u ad' cannot be used with the option '-n' 
    ? 22

A volume missing from the mount table leaves the mount point empty: the RXL trustee file is then
looked for at the root, and not found.

    $ trovan save VOL2 -n -m x
    2> Unable to find the info file for this volume.
    2> The volume may not be found or QUILL may not be running
    ? 22
    $ quillsim volume add VOL3 && printf 'VOL1 %s/mnt/VOL1 quillvol rw,name=VOL1 0 0\n' "$PWD" > etc/mtab
    ? 0
    $ trovan save VOL3 -n -m x
    2> Volume not found in the mount table
    2> Unable to find the RXL trustee file for this volume.
    ? 22

A mount point whose length with the RXL trustee file's name (32 characters) would pass 4,096
characters is refused: 4,065 characters are too many, 4,064 are not.

    $ printf 'VOL3 /%s quillvol name=VOL3 0 0\n' "$(printf 'm%.0s' $(seq 4064))" > etc/mtab
    ? 0
    $ trovan save VOL3 -n -m x
    2> RXL pathname is too long
    ? 22
    $ printf 'VOL3 /%s quillvol name=VOL3 0 0\n' "$(printf 'm%.0s' $(seq 4063))" > etc/mtab
    ? 0
    $ trovan save VOL3 -n -m x
    2> Unable to find the RXL trustee file for this volume.
    ? 22
