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
