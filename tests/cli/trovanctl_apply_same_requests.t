Applied to an empty volume, a document gets from trovanctl apply exactly the requests trovan
restore sends for it: the same bytes in the same order (the simulator's request log, with the
volume's own name and mount point written as V and M so that two volumes compare).

    $ cat > same.sh
    < # same.sh DOC N: trovan restore into AN, trovanctl apply into BN, new empty twins of GEN's files
    < quillsim volume add A$2 && quillsim volume add B$2 && cp -r mnt/GEN/. mnt/A$2/ && cp -r mnt/GEN/. mnt/B$2/ || exit 9
    < quillsim log --clear && trovan restore A$2 < "$1" 2>/dev/null
    < quillsim log --root-as R | sed "s,R/mnt/A$2/,M/,; s,<volumeName>A$2<,<volumeName>V<," > restore.log
    < quillsim log --clear && trovanctl apply B$2 "$1" --quiet --force > account.txt 2> findings.txt; echo "apply status $?"
    < quillsim log --root-as R | sed "s,R/mnt/B$2/,M/,; s,<volumeName>B$2<,<volumeName>V<," > apply.log
    < echo "$(wc -l < restore.log) requests"; cmp restore.log apply.log && echo same
    ? 0

A generated volume of 300 files (an Arbor trustee each, every tenth an AD trustee and a filter),
saved by trovan.

    $ quillsim volume add GEN && quillsim generate GEN --files 300 --touch && trovan save GEN > gen.xml
    ? 0
    $ bash same.sh gen.xml 0
    > apply status 0
    > 360 requests
    > same
    ? 0

Random documents from a fixed seed: names with entities, AD and Arbor users known and unknown,
random rights, filters, user and directory quotas, with users and files sometimes missing and
entries sometimes given twice (trovanctl's check findings, hence --force; the server's refusals,
hence status 1).

    $ cat > random.sh
    < # random.sh SEED: no command substitution touches RANDOM, so that one seed gives one document
    < RANDOM=$1
    < rights=(read write create erase accessControl fileScan modify supervisor)
    < users=(bob.corp.TREE. 'a&amp;b.corp.TREE.' nobody.corp.TREE.)
    < pick() { picked=; local r; for r in "${rights[@]}"; do (( RANDOM % 2 )) && picked+="<$r/>"; done; }
    < echo '<metadata>'; echo '<trusteeInfo>'
    < for (( n = 1; n <= 60; n++ )); do
    <   echo "<file><zid></zid><path><![CDATA[/d$((n % 7))/f$((RANDOM % 50))]]></path>"
    <   count=$(( RANDOM % 3 + 1 ))
    <   for (( t = 0; t < count; t++ )); do
    <     pick
    <     if (( RANDOM % 4 == 0 )); then echo "<trustee type=\"adID\"><name>ann</name><id>S-1-5-21-$((RANDOM % 3))</id><rights>$picked</rights></trustee>"
    <     else echo "<trustee><name>${users[RANDOM % 3]}</name><id></id><rights>$picked</rights></trustee>"; fi
    <   done
    <   pick
    <   (( RANDOM % 3 == 0 )) && echo "<inheritedRightsFilter>$picked</inheritedRightsFilter>"
    <   echo '</file>'
    < done
    < echo '</trusteeInfo>'; echo '<userInfo>'
    < for n in 1 2 3 4 5; do echo "<user><id></id><spaceUsed></spaceUsed><quotaAmount>$RANDOM</quotaAmount><name>${users[RANDOM % 3]}</name></user>"; done
    < echo '</userInfo>'; echo '<dirInfo>'
    < for n in 1 2 3 4; do echo "<directory><zid></zid><path>\\d$((RANDOM % 9))</path><spaceUsed>0</spaceUsed><quotaAmount>$RANDOM</quotaAmount></directory>"; done
    < echo '</dirInfo>'; echo '</metadata>'
    ? 0
    $ quillsim user add bob.corp.TREE. && quillsim user add 'a&b.corp.TREE.' && quillsim user add-ad S-1-5-21-1 ann && mkdir -p mnt/GEN/d0 mnt/GEN/d1 mnt/GEN/d2 && for f in $(seq 0 49); do touch mnt/GEN/d0/f$f mnt/GEN/d1/f$f mnt/GEN/d2/f$f; done
    ? 0
    $ bash random.sh 1 > random1.xml && bash same.sh random1.xml 1
    > apply status 1
    > 142 requests
    > same
    ? 0
    $ bash random.sh 2 > random2.xml && bash same.sh random2.xml 2
    > apply status 1
    > 141 requests
    > same
    ? 0
    $ bash random.sh 3 > random3.xml && bash same.sh random3.xml 3
    > apply status 1
    > 157 requests
    > same
    ? 0

Rights as a hand may write them: in any order, a right named twice, each element written
`<r/>`, `<r />` or `<r></r>`, sometimes a run of `<read/>` at and just past what trovan's rights
field holds (trovan then sends nothing for the entry, and neither does apply), for Arbor and AD
trustees and for filters. trovan restore sends the elements as the document lists them; so does
apply, while its plan compares them as a set.

    $ cat > rights.sh
    < # rights.sh SEED: one document of trustees and filters whose rights come in any order
    < RANDOM=$1
    < rights=(read write create erase accessControl fileScan modify supervisor salvage secure)
    < forms=('<R/>' '<R />' '<R></R>')
    < pick() { picked=; local n f; for (( n = RANDOM % 6; n > 0; n-- )); do f=${forms[RANDOM % 3]}; picked+=${f//R/${rights[RANDOM % 10]}}; done
    <   if (( RANDOM % 15 == 0 )); then for (( n = 73 + RANDOM % 2; n > 0; n-- )); do picked+='<read/>'; done; fi; }
    < echo '<metadata>'; echo '<trusteeInfo>'
    < for (( n = 0; n < 50; n++ )); do
    <   echo "<file><zid></zid><path>/d$((n % 3))/f$n</path>"
    <   pick; echo "<trustee><name>bob.corp.TREE.</name><id></id><rights>$picked</rights></trustee>"
    <   pick; echo "<trustee type=\"adID\"><name>ann</name><id>S-1-5-21-1</id><rights>$picked</rights></trustee>"
    <   pick; (( RANDOM % 2 )) && echo "<inheritedRightsFilter>$picked</inheritedRightsFilter>"
    <   echo '</file>'
    < done
    < echo '</trusteeInfo>'; echo '</metadata>'
    ? 0
    $ bash rights.sh 4 > rights4.xml && grep -c '<read/><read/>\|<read></read><read' rights4.xml && bash same.sh rights4.xml 4 && grep -c 'never sent: the rights elements do not fit their field' account.txt
    > 13
    > apply status 1
    > 112 requests
    > same
    > 10
    ? 0
    $ bash rights.sh 5 > rights5.xml && bash same.sh rights5.xml 5 && grep -c 'never sent: the rights elements do not fit their field' account.txt
    > apply status 1
    > 119 requests
    > same
    > 6
    ? 0
    $ bash rights.sh 6 > rights6.xml && bash same.sh rights6.xml 6 && grep -c 'never sent: the rights elements do not fit their field' account.txt
    > apply status 1
    > 114 requests
    > same
    > 6
    ? 0

Planned again, each volume holds what its document asks for, the rights compared as sets: only
the entries trovan could not send are still to add.

    $ for n in 4 5 6; do trovanctl plan B$n rights$n.xml | tail -1; done
    > plan B4 <- rights4.xml: 0 to add, 0 to change, 112 in place, 0 skipped, 10 never sent (0 may be refused); 0 on the volume only (0 to remove)
    > plan B5 <- rights5.xml: 0 to add, 0 to change, 119 in place, 0 skipped, 6 never sent (0 may be refused); 0 on the volume only (0 to remove)
    > plan B6 <- rights6.xml: 0 to add, 0 to change, 114 in place, 0 skipped, 6 never sent (0 may be refused); 0 on the volume only (0 to remove)
    ? 0

A trustee whose rights elements make 518 bytes, one more `<read/>` than trovan's field holds:
the plan says it is never sent, and apply refuses the document without --force.

    $ printf '<metadata><trusteeInfo><file><path>/d0/f1</path><trustee><name>bob.corp.TREE.</name><id></id><rights>%s</rights></trustee></file></trusteeInfo></metadata>\n' "$(printf '<read/>%.0s' $(seq 74))" > long.xml && quillsim volume add LONG && mkdir -p mnt/LONG/d0 && touch mnt/LONG/d0/f1
    ? 0
    $ trovanctl plan LONG long.xml
    > x trustee /d0/f1 bob.corp.TREE. [r]: never sent: the rights elements do not fit their field
    > plan LONG <- long.xml: 0 to add, 0 to change, 0 in place, 0 skipped, 1 never sent (0 may be refused); 0 on the volume only (0 to remove)
    ? 1
    $ trovanctl apply LONG long.xml --quiet
    > refuse    trustee /d0/f1 bob.corp.TREE. [r]: never sent: the rights elements do not fit their field
    2> trovanctl: apply: long.xml: 1 problem(s) found (see trovanctl check); nothing sent. --force sends the changes anyway
    ? 2

A user's name that fits trovan's field as written, but not once `-t` puts a longer tree name in:
trovan restore sends nothing for it, so the plan says it is never sent and apply refuses the
document without --force, as for rights that do not fit. (The thousand n's are shortened.)

    $ printf '<metadata><trusteeInfo><file><path>/d0/f1</path><trustee><name>%s.corp.TREE.</name><id></id><rights><read/></rights></trustee></file></trusteeInfo></metadata>\n' "$(printf 'n%.0s' $(seq 1000))" > tree.xml
    ? 0
    $ trovanctl plan LONG tree.xml -t TTTTTTTTTTTTTTTTTTTT > plan.txt; status=$?; sed 's/n\{1000\}/n.../' plan.txt; exit $status
    > x trustee /d0/f1 n....corp.TREE. [r]: never sent: the name does not fit its field with the tree name put in
    > plan LONG <- tree.xml: 0 to add, 0 to change, 0 in place, 0 skipped, 1 never sent (0 may be refused); 0 on the volume only (0 to remove)
    ? 1
    $ trovanctl apply LONG tree.xml -t TTTTTTTTTTTTTTTTTTTT --quiet > apply.txt; status=$?; sed 's/n\{1000\}/n.../' apply.txt; exit $status
    > refuse    trustee /d0/f1 n....corp.TREE. [r]: never sent: the name does not fit its field with the tree name put in
    2> trovanctl: apply: tree.xml: 1 problem(s) found (see trovanctl check); nothing sent. --force sends the changes anyway
    ? 2
    $ trovanctl apply LONG tree.xml -t TTTTTTTTTTTTTTTTTTTT --force > apply.txt; status=$?; sed 's/n\{1000\}/n.../' apply.txt; exit $status
    > refuse    trustee /d0/f1 n....corp.TREE. [r]: never sent: the name does not fit its field with the tree name put in
    > apply LONG <- tree.xml: 0 applied, 0 in place, 1 refused, 0 skipped, 0 removed
    ? 1
