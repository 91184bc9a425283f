Two restores into one volume at the same time: the simulated server applies one request at a
time, as a real one does, so both complete and every trustee of both documents is kept.

A source volume of 2,000 files (each with an Arbor trustee, every tenth also with an AD trustee
and a filter) is saved; a second document gives the same files to another user. The target
volume has the same files and nothing on them.

    $ quillsim volume add SRC && quillsim generate SRC --files 2000 && quillsim user add other.corp.TREE.
    ? 0
    $ trovan save SRC -m t >first.xml && sed 's/admin\.corp\.TREE\./other.corp.TREE./' first.xml >second.xml && grep -c '<trustee>' first.xml second.xml
    > first.xml:2000
    > second.xml:2000
    ? 0
    $ quillsim volume add DST && for d in 0 1; do seq -f "/d000$d/f%07g" $((d * 1000)) $((d * 1000 + 999)); done | xargs quillsim file add DST && quillsim dump DST
    > volume DST mount $SANDBOX/mnt/DST
    ? 0

Each reply waits 100 microseconds, as a server's round trip would, so that the two restores
(2,400 requests each) run side by side.

    $ quillsim latency 100us && (trovan restore DST <first.xml; echo $? >first.status) & (trovan restore DST <second.xml; echo $? >second.status) & wait; cat first.status second.status
    > 0
    > 0
    ? 0
    $ quillsim log | wc -l
    > 4800
    ? 0
    $ quillsim dump DST | cut -f1,3,5,6 | sort | uniq -c
    >     200 I	RWCEF
    >    2000 T	A		admin.corp.TREE.
    >    2000 T	A		other.corp.TREE.
    >     200 T	D	S-1-5-21-1000-2000-3000-1104	gen.user
    >       1 volume DST mount $SANDBOX/mnt/DST
    ? 0
