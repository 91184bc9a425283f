#!/usr/bin/env bash
# scripts/check_no_threads.sh refuses a program that starts a thread, naming pthread_create, and
# accepts a program of one thread.
# Usage: check_no_threads_test.sh THREADED_PROGRAM PLAIN_PROGRAM
set -uo pipefail
script=$(dirname "$0")/../../scripts/check_no_threads.sh
threaded=$1
plain=$2
failures=0
expect() { # expect WHAT EXPECTED_STATUS EXPECTED_OUTPUT STATUS OUTPUT
  if [ "$4" = "$2" ] && [ "$5" = "$3" ]; then
    echo "ok: $1"
  else
    echo "FAIL: $1: status $4 (expected $2), output:"$'\n'"$5"$'\n'"expected:"$'\n'"$3"
    failures=$((failures + 1))
  fi
}

output=$("$script" "$threaded" 2>&1)
expect "a threaded program is refused" 1 \
  "$threaded starts threads: it links pthread_create; trovan must stay one thread" $? "$output"
output=$("$script" "$plain" 2>&1)
expect "a one-thread program passes" 0 \
  "$plain links no thread machinery (no pthread_create, no thrd_create)" $? "$output"
output=$("$script" 2>&1)
expect "no argument is a usage error" 2 "usage: scripts/check_no_threads.sh BINARY" $? "$output"
exit $((failures > 0))
