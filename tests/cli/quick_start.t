The simulator's quick start (sim/README.md), run as written from a clean environment: only
`quillsim` on PATH (the first line, which points at the tree under test), no sandbox, no
preloaded library. `quillsim env` then puts the tree's `trovan` on PATH, and the save works.

    $ sed -n '/^## Quick start/,/^## Commands/s/^    //p' "$DATA/../../sim/README.md" | tail -n +2 >quick_start.sh && cat quick_start.sh
    > export QUILLSIM_ROOT=$(mktemp -d)
    > quillsim init
    > eval "$(quillsim env)"             # LD_PRELOAD, PATH (the tree's trovan too), LD_LIBRARY_PATH, QUILLSIM_ROOT, ASAN_OPTIONS
    > quillsim volume add VOL1
    > quillsim file add VOL1 /docs/a.txt /docs/b.txt
    > quillsim user add admin.corp.TREE.
    > quillsim trustee add VOL1 /docs admin.corp.TREE. rwf
    > trovan save VOL1
    > quillsim log                       # the requests trovan sent, one a line (a save sends none)
    ? 0
    $ env -u LD_PRELOAD -u LD_LIBRARY_PATH -u QUILLSIM_ROOT TMPDIR="$SANDBOX" PATH="$(dirname "$(readlink -f "$(command -v quillsim)")")/bin:/usr/bin:/bin" bash -e quick_start.sh
    > <metadata>
    > <trusteeInfo>
    > <file><zid>601066489</zid><path><![CDATA[/docs]]></path>
    > <trustee><name>admin.corp.TREE.</name><id></id><rights value="RWF"><read/><write/><fileScan/></rights></trustee>
    > </file>
    > </trusteeInfo>
    > <userInfo>
    > </userInfo>
    > <dirInfo>
    > </dirInfo>
    > </metadata>
    ? 0
