How a volume name is found in the mount table: only "quillvol" entries count; a "name=" option
names the volume and ends the scan; an entry without one is matched on its whole options field,
and a later such match replaces an earlier one. The RXL save (-n) shows which mount point was
chosen: the RXL trustee file exists under one mount point only. The mask letter x stops each run
right after the checks.

    $ quillsim volume add VOL1 && mkdir -p a/._KESTREL b && : > a/._KESTREL/.trustee_database.xml
    ? 0

An entry with options rw,name=VOL1,other matches VOL1 and ends the scan.

    $ printf 'DEVA %s/a quillvol rw,name=VOL1,other 0 0\nDEVB %s/b quillvol rw,name=VOL1 0 0\n' "$PWD" "$PWD" > etc/mtab
    ? 0
    $ trovan save VOL1 -n -m x
    2> Unknown metadata type in the mask: x
    ? 255
    $ printf 'DEVB %s/b quillvol rw,name=VOL1 0 0\nDEVA %s/a quillvol rw,name=VOL1,other 0 0\n' "$PWD" "$PWD" > etc/mtab
    ? 0
    $ trovan save VOL1 -n -m x
    2> Unable to find the RXL trustee file for this volume.
    ? 22

An entry whose options are exactly VOL1 matches, but the scan goes on and a later match wins.

    $ printf 'DEVB %s/b quillvol VOL1 0 0\nDEVA %s/a quillvol VOL1 0 0\n' "$PWD" "$PWD" > etc/mtab
    ? 0
    $ trovan save VOL1 -n -m x
    2> Unknown metadata type in the mask: x
    ? 255
    $ printf 'DEVA %s/a quillvol VOL1 0 0\nDEVB %s/b quillvol VOL1 0 0\n' "$PWD" "$PWD" > etc/mtab
    ? 0
    $ trovan save VOL1 -n -m x
    2> Unable to find the RXL trustee file for this volume.
    ? 22
    $ printf 'DEVA %s/a quillvol VOL1 0 0\nDEVB %s/b quillvol rw,name=VOL1 0 0\nDEVC %s/a quillvol VOL1 0 0\n' "$PWD" "$PWD" "$PWD" > etc/mtab
    ? 0
    $ trovan save VOL1 -n -m x
    2> Unable to find the RXL trustee file for this volume.
    ? 22

Entries of other file-system types never match, even with a matching name; when nothing
matches, the message is printed and the mount point stays empty.

    $ printf 'VOL1 %s/a ext4 rw,name=VOL1 0 0\nDEVA %s/a quillvolx VOL1 0 0\n' "$PWD" "$PWD" > etc/mtab
    ? 0
    $ trovan save VOL1 -n -m x
    2> Volume not found in the mount table
    2> Unable to find the RXL trustee file for this volume.
    ? 22

Names are compared case-sensitively, and whole.

    $ printf 'DEVA %s/a quillvol rw,name=vol1 0 0\nDEVA %s/a quillvol rw,name=VOL10 0 0\nDEVA %s/a quillvol vol1 0 0\n' "$PWD" "$PWD" "$PWD" > etc/mtab
    ? 0
    $ trovan save VOL1 -n -m x
    2> Volume not found in the mount table
    2> Unable to find the RXL trustee file for this volume.
    ? 22

A name ends at a comma, white space (written \040 in the table) or the end of the options.

    $ printf 'DEVA %s/a quillvol rw,name=VOL1\\040rest 0 0\n' "$PWD" > etc/mtab
    ? 0
    $ trovan save VOL1 -n -m x
    2> Unknown metadata type in the mask: x
    ? 255

A name is at most 255 characters long: a longer one is cut, and its first 255 characters are
what is compared.

    $ long=$(printf 'v%.0s' $(seq 255)) && quillsim volume add "$long" && printf 'DEVA %s/a quillvol rw,name=%sEXTRA 0 0\n' "$PWD" "$long" > etc/mtab && trovan save "$long" -n -m x
    2> Unknown metadata type in the mask: x
    ? 255
