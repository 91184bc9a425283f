A restore reads its document ahead of its requests: every message of the document's reading
("Unrecognized tag"), every refused request and every -a line still comes out in the order of
the entries. Forty files, every seventh with an unknown element before its trustee, every
fifth with a trustee the volume does not know.

    $ quillsim volume add V && quillsim file add V $(for i in $(seq 1 40); do printf '/f%d ' $i; done) && quillsim user add u.corp.T.
    ? 0
    $ { printf '<metadata><trusteeInfo>\n'; for i in $(seq 1 40); do printf '<file><path>/f%d</path>' $i; [ $((i % 7)) -eq 0 ] && printf '<extra>x</extra>'; if [ $((i % 5)) -eq 0 ]; then n=nobody.T.; else n=u.corp.T.; fi; printf '<trustee><name>%s</name><rights><read/></rights></trustee></file>\n' $n; done; printf '</trusteeInfo></metadata>\n'; } > doc.xml
    ? 0
    $ trovan restore V -a < doc.xml
    > Restoring trustees
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f1 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f2 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f3 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f4 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f6 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f7 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f8 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f9 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f11 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f12 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f13 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f14 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f16 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f17 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f18 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f19 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f21 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f22 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f23 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f24 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f26 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f27 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f28 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f29 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f31 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f32 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f33 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f34 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f36 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f37 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f38 with rights [r].
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/f39 with rights [r].
    > Restoring trustees - completed
    2> Error adding trustee nobody.T. to $SANDBOX/mnt/V/f5: user not found(nobody.T.)
    2> Unrecognized tag: extra
    2> Error adding trustee nobody.T. to $SANDBOX/mnt/V/f10: user not found(nobody.T.)
    2> Unrecognized tag: extra
    2> Error adding trustee nobody.T. to $SANDBOX/mnt/V/f15: user not found(nobody.T.)
    2> Error adding trustee nobody.T. to $SANDBOX/mnt/V/f20: user not found(nobody.T.)
    2> Unrecognized tag: extra
    2> Error adding trustee nobody.T. to $SANDBOX/mnt/V/f25: user not found(nobody.T.)
    2> Unrecognized tag: extra
    2> Error adding trustee nobody.T. to $SANDBOX/mnt/V/f30: user not found(nobody.T.)
    2> Unrecognized tag: extra
    2> Error adding trustee nobody.T. to $SANDBOX/mnt/V/f35: user not found(nobody.T.)
    2> Error adding trustee nobody.T. to $SANDBOX/mnt/V/f40: user not found(nobody.T.)
    ? 0

The requests went out in the same order, one per trustee.

    $ quillsim log | grep -o 'V/f[0-9]*<' | tr -d '<' | tr '\n' ' '
    >! V/f1 V/f2 V/f3 V/f4 V/f5 V/f6 V/f7 V/f8 V/f9 V/f10 V/f11 V/f12 V/f13 V/f14 V/f15 V/f16 V/f17 V/f18 V/f19 V/f20 V/f21 V/f22 V/f23 V/f24 V/f25 V/f26 V/f27 V/f28 V/f29 V/f30 V/f31 V/f32 V/f33 V/f34 V/f35 V/f36 V/f37 V/f38 V/f39 V/f40 
    ? 0
