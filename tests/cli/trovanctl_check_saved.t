trovanctl check finds nothing in a document that trovan save wrote, whatever it holds: Arbor and
AD trustees, inherited rights filters (an empty one too), user and directory quotas, the "no
quota" amount, and odd characters in paths and names (an ampersand, a blank, a non-ASCII
letter, a '<' inside CDATA). What trovan restore would send is what the document says.

    $ quillsim volume add VOL1 && quillsim file add VOL1 '/docs/a&b.txt' '/docs/x y/é.txt' '/docs/l<t' /q/sub/ '/q/a&b/'
    ? 0
    $ quillsim user add admin.corp.TREE. && quillsim user add-ad S-1-5-21-1-2-3-1104 'ann&co'
    ? 0
    $ quillsim trustee add VOL1 '/docs/a&b.txt' admin.corp.TREE. rwf && quillsim trustee add VOL1 '/docs/l<t' admin.corp.TREE. r && quillsim trustee add-ad VOL1 '/docs/x y/é.txt' S-1-5-21-1-2-3-1104 rf
    ? 0
    $ quillsim irf set VOL1 /docs s && quillsim irf set VOL1 '/docs/l<t' none && quillsim quota user VOL1 admin.corp.TREE. 1000 && quillsim quota user VOL1 'ann&co' 2000 --ad && quillsim quota dir VOL1 /q/sub 77 && quillsim quota dir VOL1 '/q/a&b' 9223372036854775807
    ? 0
    $ trovan save VOL1 > saved.xml
    ? 0
    $ trovanctl check saved.xml
    > saved.xml: 9 entries (3 trustees, 2 filters, 2 user quotas, 2 directory quotas); trovan restore would send 8 requests (3 addTrustee, 2 modifyInheritedRightsFilter, 2 userSpaceRestrictions, 1 addQuota); 0 findings
    ? 0

The same in JSON Lines: the summary object alone. The directory quota of 9223372036854775807
("no quota") is an entry that trovan restore sends nothing for.

    $ trovanctl check --json saved.xml
    > {"type":"summary","file":"saved.xml","entries":{"trustee":3,"filter":2,"userQuota":2,"dirQuota":2,"total":9},"requests":{"addTrustee":3,"modifyInheritedRightsFilter":2,"userSpaceRestrictions":2,"addQuota":1,"total":8},"compared":true,"findings":0}
    ? 0

A document read from standard input; with -m t only the trustee section is restored.

    $ trovanctl check -m t - < saved.xml
    > (standard input): 9 entries (3 trustees, 2 filters, 2 user quotas, 2 directory quotas); trovan restore would send 5 requests (3 addTrustee, 2 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 0 findings
    ? 0

Documents of each mask, and of a volume with nothing on it.

    $ quillsim volume add EMPTY && trovan save EMPTY > empty.xml && cat empty.xml && trovanctl check empty.xml
    > <metadata>
    > <trusteeInfo>
    > </trusteeInfo>
    > <userInfo>
    > </userInfo>
    > <dirInfo>
    > </dirInfo>
    > </metadata>
    > empty.xml: 0 entries (0 trustees, 0 filters, 0 user quotas, 0 directory quotas); trovan restore would send 0 requests (0 addTrustee, 0 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 0 findings
    ? 0
    $ trovan save VOL1 -m ud > quotas.xml && trovanctl check quotas.xml
    > quotas.xml: 4 entries (0 trustees, 0 filters, 2 user quotas, 2 directory quotas); trovan restore would send 3 requests (0 addTrustee, 0 modifyInheritedRightsFilter, 2 userSpaceRestrictions, 1 addQuota); 0 findings
    ? 0
    $ quillsim generate VOL1 --files 500 && trovan save VOL1 > generated.xml && trovanctl check generated.xml
    > generated.xml: 600 entries (550 trustees, 50 filters, 0 user quotas, 0 directory quotas); trovan restore would send 600 requests (550 addTrustee, 50 modifyInheritedRightsFilter, 0 userSpaceRestrictions, 0 addQuota); 0 findings
    ? 0

What check says trovan restore would send is what it does send: the same generated document
restored into an empty twin under the simulator sends as many requests of each kind.

    $ quillsim volume add VOL2 && quillsim generate VOL2 --files 500 --touch && quillsim generate VOL2 --files 0 && quillsim log --clear
    ? 0
    $ trovanctl check --json --volume VOL2 --mount-point "$SANDBOX/mnt/VOL2" generated.xml | tail -1
    > {"type":"summary","file":"generated.xml","entries":{"trustee":550,"filter":50,"userQuota":0,"dirQuota":0,"total":600},"requests":{"addTrustee":550,"modifyInheritedRightsFilter":50,"userSpaceRestrictions":0,"addQuota":0,"total":600},"compared":true,"findings":0}
    ? 0
    $ trovan restore VOL2 < generated.xml && quillsim log | grep -c '<addTrustee' && quillsim log | grep -c '<modifyInheritedRightsFilter>'
    > 550
    > 50
    ? 0
    $ trovan save VOL2 | cmp - generated.xml
    ? 0
