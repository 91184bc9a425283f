The command lines of diff, convert and map: the help of each, and usage errors in the GNU shape
with status 2.

    $ trovanctl diff --help
    > per-entry differences between two documents (or vol:NAME, a live volume)
    > Usage: trovanctl diff OLD NEW [--path PREFIX] [--user USER] [--kind KIND] [--json]
    >
    > Positionals:
    >   OLD REQUIRED                the old document (- for standard input, vol:NAME)
    >   NEW REQUIRED                the new document (- for standard input, vol:NAME)
    >
    > Options:
    >   -h,--help                   Print this help message and exit
    >   --path PREFIX ...           only entries of this path or under it (repeatable)
    >   --user USER ...             only entries of this user: Arbor name, SID or name
    >   --kind KIND:{trustee,filter,user-quota,dir-quota} ...
    >                               only entries of this kind (repeatable)
    >   --json                      JSON Lines: one object a change, the summary last
    >
    >
    > See trovanctl(8).
    ? 0
    $ trovanctl convert --help
    > a legacy TRUSTEE.KXM report to a canonical Metadata document
    > Usage: trovanctl convert -t TREE [-r PREFIX] [--raw] [-o FILE] [REPORT]
    >
    > Positionals:
    >   REPORT                      the TRUSTEE.KXM report (default: standard input)
    >
    > Options:
    >   -h,--help                   Print this help message and exit
    >   -t,--tree TREE REQUIRED     the Arbor tree name appended to user names
    >   -r,--relative PREFIX        the path prefix of paths without a volume
    >   --raw                       write exactly the document trovan restore -w makes (not escaped)
    >   -o,--output FILE            write to FILE (replaced only on success)
    >
    >
    > See trovanctl(8).
    ? 0
    $ trovanctl map --help
    > a new canonical document from an old one: users, tree and paths rewritten
    > Usage: trovanctl map DOC [-U FILE] [-t TREE] [-r OLD=NEW] [--path PREFIX] [--user USER] [--kind KIND] [--drop-unmapped] [--repair-end-tags] [-o FILE]
    >
    > Positionals:
    >   DOC REQUIRED                the document (- for standard input, vol:NAME)
    >
    > Options:
    >   -h,--help                   Print this help message and exit
    >   -U,--users FILE             the user mapping file (CSV old,new)
    >   -t,--tree TREE              the tree name that replaces each Arbor name's
    >   -r,--rebase OLD=NEW ...     paths under OLD moved under NEW (repeatable)
    >   --path PREFIX ...           only entries of this path or under it (repeatable)
    >   --user USER ...             only entries of this user: Arbor name, SID or name
    >   --kind KIND:{trustee,filter,user-quota,dir-quota} ...
    >                               only entries of this kind (repeatable)
    >   --drop-unmapped             leave out the entries a rule cannot map (still listed)
    >   --repair-end-tags           put back end tags lost by hand, each one listed (status 1)
    >   -o,--output FILE            write to FILE (replaced only on success)
    >
    >
    > See trovanctl(8).
    ? 0
    $ trovanctl diff --bogus a b
    2> trovanctl: The following argument was not expected: --bogus
    2> Try 'trovanctl diff --help' for more information.
    ? 2
    $ trovanctl map
    2> trovanctl: DOC is required
    2> Try 'trovanctl map --help' for more information.
    ? 2
    $ trovanctl map --kind user x.xml
    2> trovanctl: --kind: user not in {trustee,filter,user-quota,dir-quota}
    2> Try 'trovanctl map --help' for more information.
    ? 2
