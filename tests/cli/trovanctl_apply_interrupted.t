trovanctl apply interrupted by SIGINT or SIGTERM: the request in flight is finished, the account
and its summary are written, the status is 130 or 143; run again, it sends only what is not in
place, so that every request reaches the server once and the volume ends equal to the document.

A generated volume of 3,000 files is saved; its twin has the files and nothing else. The apply
writes its account into a pipe that nobody empties until the signal has been sent: however fast
it runs, it cannot get far past the first lines (the pipe holds far fewer than its 3,600 lines)
before it waits. The signal is sent once the first request has reached the server (the
simulator's request log); then the pipe is emptied and the apply ends.

    $ quillsim volume add GEN && quillsim generate GEN --files 3000 --touch && trovan save GEN > doc.xml && quillsim volume add VOL && cp -r mnt/GEN/. mnt/VOL/ && quillsim log --clear
    ? 0
    $ cat > interrupt.sh
    < # interrupt.sh SIGNAL: starts an apply, sends it SIGNAL once a request has been logged
    < rm -f account.pipe && mkfifo account.pipe
    < trovanctl apply VOL doc.xml --quiet --json > account.pipe 2> errors.txt & pid=$!
    < exec 3< account.pipe
    < until [ -s sim/requests.log ]; do sleep 0.01; done
    < kill -$1 $pid; cat <&3 > account.json; wait $pid; echo "status $?"
    < tail -1 account.json | grep -o '"interrupted":"[A-Z]*"'
    < applied=$(grep -c '"action":"applied"' account.json); logged=$(quillsim log | wc -l)
    < [ "$applied" -gt 0 ] && [ "$applied" -lt 3600 ] && [ "$applied" = "$logged" ] && echo "applied as logged, fewer than all"
    ? 0
    $ bash interrupt.sh INT
    > status 130
    > "interrupted":"SIGINT"
    > applied as logged, fewer than all
    ? 0

Run again: every entry is either in place or sent now, none twice.

    $ trovanctl apply VOL doc.xml --quiet > second.txt; echo "status $?"; tail -1 second.txt | sed 's/[0-9][0-9]* applied, [0-9][0-9]* in place/N applied, M in place/'
    > status 0
    > apply VOL <- doc.xml: N applied, M in place, 0 refused, 0 skipped, 0 removed
    ? 0
    $ quillsim log | wc -l && quillsim log | sort | uniq -d | wc -l && trovanctl verify VOL doc.xml
    > 3600
    > 0
    > verify VOL <- doc.xml: 3600 in place, 0 missing, 0 different, 0 skipped
    ? 0

SIGTERM does the same, with status 143.

    $ quillsim volume add TERM && cp -r mnt/GEN/. mnt/TERM/ && quillsim log --clear && sed -i 's/apply VOL/apply TERM/' interrupt.sh && bash interrupt.sh TERM
    > status 143
    > "interrupted":"SIGTERM"
    > applied as logged, fewer than all
    ? 0
