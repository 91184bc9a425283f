A volume with Arbor and AD trustees, an inherited rights filter, user and directory quotas, and
odd characters in paths and names (an ampersand, a blank, a non-ASCII letter, a '<' inside
CDATA) is saved, restored into an empty twin that has a shadow volume, and the twin is saved again: the
two documents are the same. A '<' inside a CDATA path goes into the request as the document gave
it.

    $ quillsim volume add VOL1 && quillsim volume add VOL2 --shadow SHAD2
    ? 0
    $ for v in VOL1 VOL2 SHAD2; do quillsim file add $v '/docs/a&b.txt' '/docs/x y/é.txt' '/docs/l<t' /q/sub/; done
    ? 0
    $ quillsim user add admin.corp.TREE. && quillsim user add-ad S-1-5-21-1-2-3-1104 'ann&co'
    ? 0
    $ quillsim trustee add VOL1 '/docs/a&b.txt' admin.corp.TREE. rwf && quillsim trustee add VOL1 '/docs/l<t' admin.corp.TREE. r && quillsim trustee add-ad VOL1 '/docs/x y/é.txt' S-1-5-21-1-2-3-1104 rf
    ? 0
    $ quillsim irf set VOL1 /docs s && quillsim quota user VOL1 admin.corp.TREE. 1000 && quillsim quota user VOL1 'ann&co' 2000 --ad && quillsim quota dir VOL1 /q/sub 77
    ? 0
    $ trovan save VOL1 > doc1.xml && quillsim log --clear
    ? 0

The restore, with every change confirmed on standard output.

    $ trovan restore VOL2 -a < doc1.xml
    > Restoring trustees
    > IRF mask [s] added to $SANDBOX/mnt/VOL2/docs.
    > Trustee admin.corp.TREE. added to $SANDBOX/mnt/VOL2/docs/a&b.txt with rights [rwf].
    > Trustee admin.corp.TREE. added to $SANDBOX/mnt/VOL2/docs/l<t with rights [r].
    > Trustee ann&amp;co added to $SANDBOX/mnt/VOL2/docs/x y/é.txt with rights [rf].
    > Restoring trustees - completed
    > Restoring user quotas
    > User admin.corp.TREE. assigned a quota of 1000 on volume VOL2.
    > User ann&amp;co assigned a quota of 2000 on volume VOL2.
    > Restoring user quotas - completed
    > Restoring directory quotas
    > Directory quota of 77 added to $SANDBOX/mnt/VOL2/q/sub.
    > Restoring directory quotas - completed
    ? 0

The requests, byte for byte: entity-encoded names go out encoded, and every request carries
<gemelPath/>.

    $ quillsim log | sed "s|$SANDBOX|\$SANDBOX|g"
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><modifyInheritedRightsFilter><inheritedRightsFilter><supervisor/></inheritedRightsFilter><fileName>$SANDBOX/mnt/VOL2/docs</fileName><gemelPath/></modifyInheritedRightsFilter></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>admin.corp.TREE.</name><rights><read/><write/><fileScan/></rights><fileName>$SANDBOX/mnt/VOL2/docs/a&b.txt</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee><name>admin.corp.TREE.</name><rights><read/></rights><fileName>$SANDBOX/mnt/VOL2/docs/l<t</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><trustees><addTrustee type="adID"><userID>S-1-5-21-1-2-3-1104</userID><rights><read/><fileScan/></rights><fileName>$SANDBOX/mnt/VOL2/docs/x y/é.txt</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>
    > <virtualIO><datastream name="command"/></virtualIO><quillRequest><userSpaceRestrictions><set><volumeName>VOL2</volumeName><userName>admin.corp.TREE.</userName><quota>1000</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>
    > <virtualIO><datastream name="command"/></virtualIO><quillRequest><userSpaceRestrictions><set type="adID"><volumeName>VOL2</volumeName><userName>ann&amp;co</userName><quota>2000</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>
    > <virtualIO><datastream name="command"/></virtualIO><fileRequest><directoryQuota><addQuota><fileName>$SANDBOX/mnt/VOL2/q/sub</fileName><gemelPath/><quotaAmount>77</quotaAmount></addQuota></directoryQuota></fileRequest>
    ? 0

The twin's saved document is the original's, byte for byte, and so is its shadow's.

    $ trovan save VOL2 > doc2.xml && cmp doc1.xml doc2.xml && trovan save SHAD2 | cmp doc1.xml -
    ? 0

The shadow volume got every change.

    $ quillsim dump SHAD2
    > volume SHAD2 mount $SANDBOX/mnt/SHAD2
    > I	/docs	S
    > T	/docs/a&b.txt	A	RWF		admin.corp.TREE.
    > T	/docs/l<t	A	R		admin.corp.TREE.
    > T	/docs/x y/é.txt	D	RF	S-1-5-21-1-2-3-1104	ann&co
    > U	A	1000	0		admin.corp.TREE.
    > U	D	2000	0	S-1-5-21-1-2-3-1104	ann&co
    > Q	/q/sub	77	0
    ? 0

With -k the same restore into another twin leaves its shadow untouched, and no request carries
<gemelPath/>.

    $ quillsim volume add VOL3 --shadow SHAD3 && quillsim file add VOL3 '/docs/a&b.txt' '/docs/x y/é.txt' /q/sub/ && quillsim log --clear
    ? 0
    $ sed 9,11d doc1.xml | trovan restore VOL3 -k
    ? 0
    $ quillsim log | grep -c gemelPath
    > 0
    ? 1
    $ quillsim log | wc -l
    > 6
    ? 0
    $ quillsim dump SHAD3
    > volume SHAD3 mount $SANDBOX/mnt/SHAD3
    ? 0
    $ trovan save VOL3 | diff doc1.xml -
    > 9,11d8
    > < <file><zid>534863682</zid><path><![CDATA[/docs/l<t]]></path>
    > < <trustee><name>admin.corp.TREE.</name><id></id><rights value="R"><read/></rights></trustee>
    > < </file>
    ? 1
