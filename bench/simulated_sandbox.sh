# Sourced by the trovanctl benches: the programs built, a work folder $W (in memory when it can
# be, removed at the end) and a simulator sandbox in it, initialised, its environment in force.
# Sets SRC, B (the build), W and Q (quillsim). Takes the folder's name from $1.
SRC=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
B=${BUILD:-$SRC/build/release}
ninja -C "$B" trovan trovanctl quillsim_all >/dev/null
W=$(mktemp -d "/dev/shm/$1.XXXXXX" 2>/dev/null || mktemp -d "/tmp/$1.XXXXXX")
trap 'rm -rf "$W"' EXIT
export QUILLSIM_ROOT=$W/sandbox
mkdir "$QUILLSIM_ROOT"
Q=$B/sim/quillsim
"$Q" init
eval "$("$Q" env)"
