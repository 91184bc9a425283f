trovanctl report: the errors of its command line and of its document. Each is status 2.

    $ quillsim volume add VOL1 && quillsim file add VOL1 /a && quillsim user add u.T. && quillsim trustee add VOL1 /a u.T. r && trovan save VOL1 > saved.xml
    ? 0
    $ trovanctl report --by size saved.xml
    2> trovanctl: report: unknown view (--by): size (path or user)
    ? 2
    $ trovanctl report --format xml saved.xml
    2> trovanctl: report: unknown format (--format): xml (text, csv or json)
    ? 2
    $ trovanctl report --kind group saved.xml
    2> trovanctl: report: unknown kind (--kind): group (arbor, ad, trustee, filter, user-quota or dir-quota)
    ? 2
    $ trovanctl report --rights rq saved.xml
    2> trovanctl: report: unknown right letter in --rights: q
    ? 2
    $ trovanctl report --rights '' saved.xml
    2> trovanctl: report: --rights needs at least one letter
    ? 2
    $ trovanctl report --effective /a --effective-all saved.xml
    2> trovanctl: report: --effective and --effective-all cannot be used together
    ? 2
    $ trovanctl report --by user --effective /a saved.xml
    2> trovanctl: report: --by user cannot be used with --effective or --effective-all
    ? 2
    $ trovanctl report --html page.html --format csv saved.xml
    2> trovanctl: report: --html writes the whole volume: it takes no view, filter or format option
    ? 2
    $ trovanctl report missing.xml
    2> trovanctl: missing.xml: No such file or directory
    ? 2
    $ trovanctl report
    2> trovanctl: DOC is required
    2> Try 'trovanctl report --help' for more information.
    ? 2
    $ printf '<metadata>\n<trusteeInfo>\n</userInfo>\n' | trovanctl report -
    2> trovanctl: (standard input):3:3: not well-formed XML: mismatched tag (the open element is <trusteeInfo> of line 2)
    ? 2
    $ trovanctl report --html no/such/dir/page.html saved.xml
    2> trovanctl: no/such/dir/page.html: No such file or directory
    ? 2
    $ trovanctl report --help | head -3
    > who has access to what: assignments, quotas and effective rights, by path or by user
    > Usage: trovanctl report DOC [--by VIEW] [--effective PATH|--effective-all] [--path PREFIX] [--user NAME] [--rights LETTERS] [--kind KIND] [--format FORMAT|--html FILE]
    >
    ? 0
