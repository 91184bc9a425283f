The command line: usage, help, version, actions and the option checks that come before any
volume is looked at.

A run without arguments, or with three positional arguments, shows the usage and succeeds.

    $ trovan
    >@ data/help.txt
    ? 0
    $ trovan save VOL1 extra
    >@ data/help.txt
    ? 0
    $ trovan save
    >@ data/help.txt
    ? 0

The help screen is the usage screen, whatever the spelling of the option, and ends the run at
once, before the arguments are counted.

    $ trovan --help
    >@ data/help.txt
    ? 0
    $ trovan -h save VOL1 -m x
    >@ data/help.txt
    ? 0

The usage names the program as it was called.

    $ ln -s "$(command -v trovan)" ./backup-tool && ./backup-tool | sed -n 4,6p
    > Usage: backup-tool [OPTIONS]
    >        backup-tool save volume [SOPTIONS]
    >        backup-tool restore volume [ROPTIONS]
    ? 0

The version.

    $ trovan -v
    > trovan (QUILL) 1.04
    > Copyright (C) 2026 the trovan developers. Free software under the MIT License.
    ? 0
    $ trovan --version save VOL1
    > trovan (QUILL) 1.04
    > Copyright (C) 2026 the trovan developers. Free software under the MIT License.
    ? 0

An action other than save or restore is refused.

    $ trovan copy VOL1
    2> Missing action.
    2> Use trovan --help for more information
    ? 22

Options that the parser does not know, or that lack their argument.

    $ trovan -z save VOL1
    2> trovan: invalid option -- 'z'
    2> Try 'trovan --help' for more information.
    ? 22
    $ trovan save VOL1 --meta=t
    2> trovan: unrecognized option '--meta=t'
    2> Try 'trovan --help' for more information.
    ? 22
    $ trovan save VOL1 -m
    2> trovan: option requires an argument -- 'm'
    2> Try 'trovan --help' for more information.
    ? 22

User types are case-sensitive, and only one -u is allowed.

    $ trovan restore VOL1 -u AD
    2> Unknown user type : AD
    ? 255
    $ trovan restore VOL1 -u Arbor </dev/null
    2> Unknown user type : Arbor
    ? 255
    $ trovan restore VOL1 -u ad -u arbor
    2> Multiple user type option is not allowed.
    ? 22
    $ trovan restore VOL1 --usertype=ad --usertype=ad
    2> Multiple user type option is not allowed.
    ? 22

-u ad is refused after -n (checked only in that order).

    $ trovan save VOL1 -n -u ad
    2> Option '-u ad' cannot be used with the option '-n' 
    ? 22
    $ trovan restore VOL1 --rxl --usertype ad
    2> Option '-u ad' cannot be used with the option '-n' 
    ? 22

A filter that is no regular expression ends the run with 12, not 22.

    $ trovan restore VOL1 -f 'a\{1'
    2> Error parsing the regular expression.
    ? 12

A mask of 16 or more characters aborts the process; 15 are copied.

    $ trovan save VOL1 -m abcdefghijklmnopq
    2> *** buffer overflow detected ***: terminated
    ? 134
    $ trovan save VOL1 --mask=tttttttttttttttt
    2> *** buffer overflow detected ***: terminated
    ? 134

A -w restore without a tree name is refused before anything is read.

    $ trovan restore VOL1 -w
    2> Provide Arbor tree name.
    ? 22
