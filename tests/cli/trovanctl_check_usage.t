The command line of trovanctl: help for the program and every command, the version, and usage
errors in the GNU shape with status 2.

    $ trovanctl --version
    > trovanctl (QUILL) 1.04
    > Copyright (C) 2026 the trovan developers. Free software under the MIT License.
    ? 0
    $ trovanctl --help
    > trovanctl: check, compare, convert, map and report on Metadata documents, and plan, apply and verify their restore to a volume.
    > Usage: trovanctl COMMAND [options] [operands]
    >
    > Options:
    >   -h,--help                   Print this help message and exit
    >   --version                   show the version and exit
    >
    > Commands:
    >   check DOC [-m MASK] [-u TYPE] [-t TREE] [-f FILTER] [-k] [-n] [--json]
    >       report everything wrong with a Metadata document before trovan restore applies it
    >   diff OLD NEW [--path PREFIX] [--user USER] [--kind KIND] [--json]
    >       per-entry differences between two documents (or vol:NAME, a live volume)
    >   convert -t TREE [-r PREFIX] [--raw] [-o FILE] [REPORT]
    >       a legacy TRUSTEE.KXM report to a canonical Metadata document
    >   map DOC [-U FILE] [-t TREE] [-r OLD=NEW] [--path PREFIX] [--user USER] [--kind KIND] [--drop-unmapped] [--repair-end-tags] [-o FILE]
    >       a new canonical document from an old one: users, tree and paths rewritten
    >   report DOC [--by VIEW] [--effective PATH|--effective-all] [--path PREFIX] [--user NAME] [--rights LETTERS] [--kind KIND] [--format FORMAT|--html FILE]
    >       who has access to what: assignments, quotas and effective rights, by path or by user
    >   plan VOL DOC [-m MASK] [-u TYPE] [-t TREE] [-f FILTER] [-k] [--prune] [--out FILE] [--json]
    >       show what a restore of a document would change on a volume, entry by entry
    >   apply VOL DOC [restore options] [--prune] [--force] [--rejects FILE] [--no-wait] [--json]
    >       send a volume only the changes a document asks for, with an account of every entry
    >   verify VOL DOC [-m MASK] [-u TYPE] [-t TREE] [-f FILTER] [--remaining FILE] [--json]
    >       tell whether every entry of a document is in place on a volume
    >
    >
    > Exit status: 0 clean, 1 findings or differences, 2 usage or fatal error.
    > Run 'trovanctl COMMAND --help' for a command's options; see trovanctl(8).
    ? 0
    $ trovanctl check --help
    > report everything wrong with a Metadata document before trovan restore applies it
    > Usage: trovanctl check DOC [-m MASK] [-u TYPE] [-t TREE] [-f FILTER] [-k] [-n] [--json]
    >
    > Positionals:
    >   DOC REQUIRED                the Metadata document (- for standard input)
    >
    > Options:
    >   -h,--help                   Print this help message and exit
    >   -m,--meta MASK              the kinds restored: letters t, u, d, a
    >   -u,--usertype TYPE          only arbor or ad users
    >   -t,--tree TREE              the tree name that replaces the saved one
    >   -f,--filter FILTER          only paths the expression matches
    >   -k,--no-gemel               requests without <gemelPath/>
    >   -n,--rxl                    trustees through the RXL console
    >   --volume NAME               the volume name requests carry
    >   --mount-point DIR           the mount point put before paths (default /mnt/VOLUME)
    >   --json                      JSON Lines: one object a finding, the summary last
    >
    >
    > See trovanctl(8).
    ? 0
    $ trovanctl
    2> trovanctl: A subcommand is required
    2> Try 'trovanctl --help' for more information.
    ? 2
    $ trovanctl frobnicate x.xml
    2> trovanctl: unknown command 'frobnicate'
    2> Try 'trovanctl --help' for more information.
    ? 2
    $ trovanctl check
    2> trovanctl: DOC is required
    2> Try 'trovanctl check --help' for more information.
    ? 2
    $ trovanctl check a.xml b.xml
    2> trovanctl: The following argument was not expected: b.xml
    2> Try 'trovanctl check --help' for more information.
    ? 2
    $ trovanctl check --bogus a.xml
    2> trovanctl: The following argument was not expected: --bogus
    2> Try 'trovanctl check --help' for more information.
    ? 2
    $ trovanctl check -m
    2> trovanctl: --meta: 1 required MASK missing
    2> Try 'trovanctl check --help' for more information.
    ? 2

Options are checked before the document is read: a mask letter, a user type, a filter that does
not compile, and -u ad with -n, which trovan restore refuses too.

    $ printf '<metadata></metadata>' > doc.xml
    ? 0
    $ trovanctl check -m tx doc.xml
    2> trovanctl: check: unknown letter in the mask (-m): x
    ? 2
    $ trovanctl check -u everyone doc.xml
    2> trovanctl: check: unknown user type (-u): everyone (arbor or ad)
    ? 2
    $ trovanctl check -f 'a\{1' doc.xml
    2> trovanctl: check: bad filter expression (-f) "a\{1": Unmatched \{
    ? 2
    $ trovanctl check -n -u ad doc.xml
    2> trovanctl: check: -u ad cannot be used with -n
    ? 2

A document that cannot be read is a fatal error, status 2.

    $ trovanctl check missing.xml
    2> trovanctl: missing.xml: No such file or directory
    ? 2
    $ mkdir folder && trovanctl check folder
    2> trovanctl: folder: Is a directory
    ? 2
