A transcript whose programs leave things behind: the runner must fail it after its last command,
although every command gives the expected output. bash keeps a command file open on descriptor
3 as it ends, makes a file in /tmp and leaves it, and makes another that it removes.

    $ exec 3< /_admin/Manage_QUILL/files.cmd
    ? 0
    $ : > /tmp/trovan-selftest-left.$$
    ? 0
    $ : > /tmp/trovan-selftest-removed.$$ && rm /tmp/trovan-selftest-removed.$$
    ? 0

A descriptor on standard input is not reported, the way invalid trustee removal leaves an info
file there.

    $ exec 0< /etc/mtab
    ? 0
