trovanctl plan, apply and verify: the lookups behind "may be refused" (a path looked up once for
the entries on it, nothing looked up under a directory found missing, each SID asked once), and
a document on standard input read as it comes, from a pipe.

    $ quillsim volume add DST && quillsim file add DST /a /b /d/c /d/e && quillsim user add bob.corp.TREE. && quillsim user add-ad S-1-5-21-1-2-3-1104 ann
    ? 0
    $ cat > doc.xml
    < <metadata>
    < <trusteeInfo>
    < <file><zid></zid><path>/gone/x</path>
    < <trustee><name>bob.corp.TREE.</name><id></id><rights><read/></rights></trustee>
    < <inheritedRightsFilter><read/></inheritedRightsFilter>
    < </file>
    < <file><zid></zid><path>/gone/y</path>
    < <trustee><name>bob.corp.TREE.</name><id></id><rights><read/></rights></trustee>
    < </file>
    < <file><zid></zid><path>/d/missing</path>
    < <trustee><name>bob.corp.TREE.</name><id></id><rights><read/></rights></trustee>
    < </file>
    < <file><zid></zid><path>/d/c</path>
    < <trustee type="adID"><name>who</name><id>S-1-5-21-9</id><rights><read/></rights></trustee>
    < <trustee type="adID"><name>ann</name><id>S-1-5-21-1-2-3-1104</id><rights><read/></rights></trustee>
    < </file>
    < <file><zid></zid><path>/d/e</path>
    < <trustee type="adID"><name>who</name><id>S-1-5-21-9</id><rights><read/></rights></trustee>
    < </file>
    < <file><zid></zid><path>/a</path>
    < <trustee><name>bob.corp.TREE.</name><id></id><rights><read/></rights></trustee>
    < </file>
    < </trusteeInfo>
    < </metadata>
    ? 0

Two files under a missing directory, a missing file beside existing ones, an unknown SID twice.

    $ trovanctl plan DST doc.xml
    > + trustee /gone/x bob.corp.TREE. [r]: may be refused: no such file under the mount point: $SANDBOX/mnt/DST/gone/x
    > + inherited rights filter /gone/x [r]: may be refused: no such file under the mount point: $SANDBOX/mnt/DST/gone/x
    > + trustee /gone/y bob.corp.TREE. [r]: may be refused: no such file under the mount point: $SANDBOX/mnt/DST/gone/y
    > + trustee /d/missing bob.corp.TREE. [r]: may be refused: no such file under the mount point: $SANDBOX/mnt/DST/d/missing
    > + trustee /d/c S-1-5-21-9 (who) [r]: may be refused: the identity library does not resolve S-1-5-21-9
    > + trustee /d/c S-1-5-21-1-2-3-1104 (ann) [r]
    > + trustee /d/e S-1-5-21-9 (who) [r]: may be refused: the identity library does not resolve S-1-5-21-9
    > + trustee /a bob.corp.TREE. [r]
    > plan DST <- doc.xml: 8 to add, 0 to change, 0 in place, 0 skipped, 0 never sent (6 may be refused); 0 on the volume only (0 to remove)
    ? 1

The same document through a pipe. apply sends what it can (--force: the findings above) and
the file system refuses what the plan foresaw; verify then finds those missing.

    $ cat doc.xml | trovanctl plan DST - --json > plan.json; echo "plan status ${PIPESTATUS[1]}"; tail -1 plan.json
    > plan status 1
    > {"type":"plan-summary","volume":"DST","document":"(standard input)","add":8,"change":0,"inPlace":0,"skipped":0,"refused":0,"flagged":6,"extra":0,"remove":0}
    ? 0
    $ cat doc.xml | trovanctl apply DST - --force --quiet
    > refused   trustee /gone/x bob.corp.TREE. [r]: 2 file not found
    > refused   inherited rights filter /gone/x [r]: 2 file not found
    > refused   trustee /gone/y bob.corp.TREE. [r]: 2 file not found
    > refused   trustee /d/missing bob.corp.TREE. [r]: 2 file not found
    > refused   trustee /d/c S-1-5-21-9 (who) [r]: 3 user not found
    > applied   trustee /d/c S-1-5-21-1-2-3-1104 (ann) [r]
    > refused   trustee /d/e S-1-5-21-9 (who) [r]: 3 user not found
    > applied   trustee /a bob.corp.TREE. [r]
    > apply DST <- (standard input): 2 applied, 0 in place, 6 refused, 0 skipped, 0 removed
    ? 1
    $ cat doc.xml | trovanctl verify DST -
    > missing   trustee /gone/x bob.corp.TREE. [r]
    > missing   inherited rights filter /gone/x [r]
    > missing   trustee /gone/y bob.corp.TREE. [r]
    > missing   trustee /d/missing bob.corp.TREE. [r]
    > missing   trustee /d/c S-1-5-21-9 (who) [r]
    > missing   trustee /d/e S-1-5-21-9 (who) [r]
    > verify DST <- (standard input): 2 in place, 6 missing, 0 different, 0 skipped
    ? 1

A document written to something that is no regular file (a pipe here, /dev/null alike) is
written into it, not renamed over it.

    $ mkfifo rejects.pipe && { cat rejects.pipe > got.xml & } && trovanctl apply DST doc.xml --force --quiet --rejects rejects.pipe > /dev/null; echo "apply status $?"; wait; grep -c '</trustee>' got.xml; test -p rejects.pipe && echo "still a pipe"
    > apply status 1
    > 5
    > still a pipe
    ? 0
