# Shared helpers of the simulator's own tests: a fresh sandbox per test file, exact comparisons.
set -u
B=${QUILLSIM_BUILD:?QUILLSIM_BUILD names the simulator build directory}
T=$B/tests
fails=0

F='<virtualIO><datastream name="command"/></virtualIO><fileRequest>'
FE='</fileRequest>'
V='<virtualIO><datastream name="command"/></virtualIO><quillRequest>'
VE='</quillRequest>'

setup() {
  QUILLSIM_ROOT=$(mktemp -d /tmp/quillsim-test.XXXXXX)
  export QUILLSIM_ROOT
  trap 'rm -rf "$QUILLSIM_ROOT"' EXIT
  "$B/quillsim" init
  eval "$("$B/quillsim" env)"
  M=$QUILLSIM_ROOT/mnt
}

# expect NAME EXPECTED ACTUAL
expect() {
  if [ "$2" != "$3" ]; then
    echo "FAIL $1"
    echo "--- expected"
    printf '%s\n' "$2"
    echo "--- actual"
    printf '%s\n' "$3"
    fails=$((fails + 1))
  fi
}

# req FILE REQUEST: sends one request through the preloaded library, prints the reply.
req() { printf '%s' "$2" | "$T/quillsim_exchange" "$1" "${@:3}"; }

ok() { printf '<quillReply>\n<%s><result value="0"><description>success</description></result></%s>\n</quillReply>' "$1" "$1"; }
err() { printf '<quillReply>\n<%s><result value="%s"><description>%s</description><name>%s</name></result></%s>\n</quillReply>' "$1" "$2" "$3" "$4" "$1"; }

finish() {
  if [ "$fails" -eq 0 ]; then echo ok; fi
  exit "$fails"
}
