What trovanctl check computes that trovan restore would send for a document (trovan's own
walkers run against the request stand-in, as check runs them) is, request for request, in order
and byte for byte, what trovan restore sends to a volume. check_requests prints the former in
the simulator's request log form; the log holds the latter.

Two hundred random documents from a fixed seed (data/generate_documents.py): Arbor and AD
trustees, the AD marker in single quotes too, filters, user and directory quotas, names and paths
with '&', '<', quotes and non-ASCII letters, values at and past the lengths trovan reads, and
elements trovan's reader takes otherwise than an XML parser. Every path of document N starts
with /gN/, so that a difference shows which document it came from.

    $ python3 "$DATA/data/generate_documents.py" 7 200 docs && quillsim volume add GEN && quillsim log --clear
    ? 0
    $ cat > same.sh
    < # same.sh N [OPTION...]: the first N documents restored into GEN and computed by check_requests
    < # with the same options; prints the number of requests, of restores that ended their process
    < # (status 134: an abort), and whether the two lists are equal
    < n=$1; shift; docs=(docs/*.xml); docs=("${docs[@]:0:n}")
    < quillsim log --clear; ended=0
    < for doc in "${docs[@]}"; do trovan restore GEN "$@" < "$doc" > /dev/null; [ $? = 134 ] && ended=$((ended + 1)); done 2> /dev/null
    < quillsim log > restore.log
    < "$TROVAN_CHECK_REQUESTS" --volume GEN --mount-point "$QUILLSIM_ROOT/mnt/GEN" "$@" "${docs[@]}" > check.log || exit 9
    < echo "$(wc -l < restore.log) requests, $ended restores aborted"; cmp restore.log check.log && echo same
    ? 0
Some of the restores end their process (a directory quota path that makes, with the mount point,
a file name over 4,095 bytes): what they sent before that counts, on both sides.

    $ bash same.sh 200
    > 1076 requests, 2 restores aborted
    > same
    ? 0

The same for the first 60 documents with the options that change what is sent: without <gemelPath/> and with another tree
name; Arbor users alone, trustees and user quotas alone; AD users alone under a filter on the
full path; directory quotas alone.

    $ bash same.sh 60 -k -t NEWTREE
    > 351 requests, 2 restores aborted
    > same
    ? 0
    $ bash same.sh 60 -u arbor -m tu
    > 271 requests, 0 restores aborted
    > same
    ? 0
    $ bash same.sh 60 -u ad -f '/g1[0-9]*/'
    > 26 requests, 2 restores aborted
    > same
    ? 0
    $ bash same.sh 60 -m d
    > 69 requests, 2 restores aborted
    > same
    ? 0
