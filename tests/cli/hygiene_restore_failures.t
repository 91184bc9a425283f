Resource hygiene on the failure paths of a restore. Every section opens its command file and
closes it when it ends, on every path; after the last command the transcript runner checks that
no program of the sandbox left a descriptor open on a simulated admin file or the mount table,
and that no file made in /tmp is left (`quillsim log --leaks`). The document has more than one
section of each kind but user quotas, so each kind of section is entered again after another.

    $ quillsim volume add V && quillsim file add V /a /b && quillsim dir add V /q && quillsim user add u.corp.T.
    ? 0
    $ printf '<metadata>\n<trusteeInfo>\n<file><path>/a</path><trustee><name>u.corp.T.</name><rights><read/></rights></trustee></file>\n</trusteeInfo>\n<userInfo>\n<user><quotaAmount>5</quotaAmount><name>u.corp.T.</name></user>\n</userInfo>\n<dirInfo>\n<directory><path>\\q</path><quotaAmount>9</quotaAmount></directory>\n</dirInfo>\n<trusteeInfo>\n<file><path>/b</path><trustee><name>u.corp.T.</name><rights><write/></rights></trustee></file>\n</trusteeInfo>\n<dirInfo>\n<directory><path>\\q</path><quotaAmount>10</quotaAmount></directory>\n</dirInfo>\n</metadata>\n' > doc.xml
    ? 0

All goes well: two trustee sections, a user quota section and two directory quota sections.

    $ trovan restore V -a < doc.xml
    > Restoring trustees
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/a with rights [r].
    > Restoring trustees - completed
    > Restoring user quotas
    > User u.corp.T. assigned a quota of 5 on volume V.
    > Restoring user quotas - completed
    > Restoring directory quotas
    > Directory quota of 9 added to $SANDBOX/mnt/V/q.
    > Restoring directory quotas - completed
    > Restoring trustees
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/b with rights [w].
    > Restoring trustees - completed
    > Restoring directory quotas
    > Directory quota of 10 added to $SANDBOX/mnt/V/q.
    > Restoring directory quotas - completed
    ? 0

A refusal in each kind of section is reported and the restore goes on.

    $ quillsim fault refuse 'V/a</fileName>' 3 'user not found' u.corp.T. && quillsim fault refuse userSpaceRestrictions 3 'user not found' u.corp.T. && quillsim fault refuse addQuota 22 'invalid quota amount'
    ? 0
    $ trovan restore V < doc.xml
    2> Error adding trustee u.corp.T. to $SANDBOX/mnt/V/a: user not found(u.corp.T.)
    2> Error adding user quotas for u.corp.T. to V: user not found(u.corp.T.)
    2> Error adding directory quota of 9 to $SANDBOX/mnt/V/q: invalid quota amount()
    2> Error adding directory quota of 10 to $SANDBOX/mnt/V/q: invalid quota amount()
    ? 0
    $ quillsim fault clear
    ? 0

A document cut off inside each section in turn: the section ends with the end of input (-99,
status 157) and so does the restore.

    $ head -c $(grep -bo '<read/>' doc.xml | cut -d: -f1) doc.xml | trovan restore V -a
    > Restoring trustees
    ? 157
    $ head -c $(grep -bo '<name>u.corp.T.</name></user>' doc.xml | cut -d: -f1) doc.xml | trovan restore V -a
    > Restoring trustees
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/a with rights [r].
    > Restoring trustees - completed
    > Restoring user quotas
    ? 157
    $ head -c $(grep -bo '9</quotaAmount>' doc.xml | cut -d: -f1) doc.xml | trovan restore V -a
    > Restoring trustees
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/a with rights [r].
    > Restoring trustees - completed
    > Restoring user quotas
    > User u.corp.T. assigned a quota of 5 on volume V.
    > Restoring user quotas - completed
    > Restoring directory quotas
    2> Unable to find end tag: quotaAmount
    ? 157
    $ head -c $(grep -bo '<write/>' doc.xml | cut -d: -f1) doc.xml | trovan restore V -a
    > Restoring trustees
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/a with rights [r].
    > Restoring trustees - completed
    > Restoring user quotas
    > User u.corp.T. assigned a quota of 5 on volume V.
    > Restoring user quotas - completed
    > Restoring directory quotas
    > Directory quota of 9 added to $SANDBOX/mnt/V/q.
    > Restoring directory quotas - completed
    > Restoring trustees
    ? 157
    $ head -c $(grep -bo '10</quotaAmount>' doc.xml | cut -d: -f1) doc.xml | trovan restore V -a
    > Restoring trustees
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/a with rights [r].
    > Restoring trustees - completed
    > Restoring user quotas
    > User u.corp.T. assigned a quota of 5 on volume V.
    > Restoring user quotas - completed
    > Restoring directory quotas
    > Directory quota of 9 added to $SANDBOX/mnt/V/q.
    > Restoring directory quotas - completed
    > Restoring trustees
    > Trustee u.corp.T. added to $SANDBOX/mnt/V/b with rights [w].
    > Restoring trustees - completed
    > Restoring directory quotas
    2> Unable to find end tag: quotaAmount
    ? 157

A reply that cannot be read and a request that cannot be written, in each kind of section: the
entry is reported and the restore goes on.

    $ quillsim fault read-error EIO addTrustee && trovan restore V < doc.xml
    2> Error reading the reply from the admin file system.  err=Input/output error
    2> Error reading the reply from the admin file system.  err=Input/output error
    ? 0
    $ quillsim fault clear && quillsim fault read-error EIO userSpaceRestrictions && trovan restore V < doc.xml
    2> Error reading the reply from the admin file system.  err=Input/output error
    ? 0
    $ quillsim fault clear && quillsim fault read-error EIO addQuota && trovan restore V < doc.xml
    2> Error reading the reply from the admin file system.  err=Input/output error
    2> Error reading the reply from the admin file system.  err=Input/output error
    ? 0
    $ quillsim fault clear && quillsim fault write-error ENOSPC && trovan restore V < doc.xml
    2> Error sending the request to the admin file system.  err=No space left on device
    2> Error sending the request to the admin file system.  err=No space left on device
    2> Error sending the request to the admin file system.  err=No space left on device
    2> Error sending the request to the admin file system.  err=No space left on device
    2> Error sending the request to the admin file system.  err=No space left on device
    ? 0

Sections the mask leaves out are skipped unread; a filter that passes no path sends nothing; the
RXL mode leaves the quota sections out and runs the console command for each trustee, removing
its temporary file each time.

    $ quillsim fault clear
    ? 0
    $ trovan restore V -m u -a < doc.xml
    > Restoring user quotas
    > User u.corp.T. assigned a quota of 5 on volume V.
    > Restoring user quotas - completed
    ? 0
    $ trovan restore V -m td -f '^$' < doc.xml
    ? 0
    $ trovan restore V -n < doc.xml
    ? 0

Saving, with the removal of invalid trustees (which leaves standard input on the trustee info
file on purpose), and a save restored in full.

    $ quillsim quota user V u.corp.T. 7 && quillsim trustee add V /a 'Unknown(21350)' r && trovan save V -m r > /dev/null
    ? 0
    $ trovan save V > saved.xml && trovan restore V < saved.xml
    ? 0

Nothing was left behind.

    $ quillsim log --leaks
    ? 0
