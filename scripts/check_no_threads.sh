#!/usr/bin/env bash
# trovan is one thread: fails, naming the symbols, when BINARY asks the dynamic linker for a
# function that starts a thread (pthread_create, or C11's thrd_create).
#
# Usage: scripts/check_no_threads.sh BINARY
set -euo pipefail
[ $# -eq 1 ] || { echo "usage: scripts/check_no_threads.sh BINARY" >&2; exit 2; }
binary=$1
symbols=$(nm -D "$binary") || { echo "check_no_threads: cannot read the symbols of $binary" >&2; exit 2; }
starters=$(awk '{ sub(/@.*/, "", $NF) } $NF == "pthread_create" || $NF == "thrd_create" { print $NF }' \
  <<<"$symbols" | sort -u | tr '\n' ' ')
if [ -n "$starters" ]; then
  echo "$binary starts threads: it links ${starters% }; trovan must stay one thread" >&2
  exit 1
fi
echo "$binary links no thread machinery (no pthread_create, no thrd_create)"
