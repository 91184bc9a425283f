#!/usr/bin/env bash
# The main job on a simulated volume, explained as it goes: builds what the demo runs (trovan,
# the simulator, and trovanctl once the tree has it) in the Release tree build/release, makes a
# demo volume, saves it, restores the document into an empty twin volume, saves the twin, shows
# that the two documents agree, and ends with the lines that step into the sandbox.
#
# Usage: scripts/demo.sh [BUILD_DIR]      (default build/release; a second run takes seconds)
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/require.sh
trovan_require_build_tools

src=$PWD
build=${1:-build/release}
mkdir -p "$build"
build=$(cd "$build" && pwd)
say() { printf '\n== %s\n' "$*"; }

# One configuration for the demo, the README's commands, the install and the package: Release in
# build/release. A tree configured so already is reused as it is (ninja re-runs CMake itself when
# a CMakeLists.txt changed).
if [ "$(sed -n 's/^CMAKE_BUILD_TYPE:[A-Z]*=//p' "$build/CMakeCache.txt" 2>/dev/null)" != Release ]; then
  say "configuring the Release tree $build"
  cmake -S "$src" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release
fi
targets=(trovan quillsim_all)
if ninja -C "$build" -t targets all 2>/dev/null | grep -q '^trovanctl:'; then targets+=(trovanctl); fi
say "building only what the demo runs: ${targets[*]}"
ninja -C "$build" "${targets[@]}"

# The sandbox lives in the build tree, so that it is easy to find and each run starts afresh.
QUILLSIM_ROOT=$build/demo-sandbox
export QUILLSIM_ROOT
rm -rf "$QUILLSIM_ROOT"
quillsim=$build/sim/quillsim
"$quillsim" init
eval "$("$quillsim" env)"

say "a simulated QUILL server in $QUILLSIM_ROOT: volume DEMO (with its Gemel shadow) and an empty twin TWIN"
quillsim volume add DEMO --shadow DEMO_GEMEL
quillsim volume add TWIN
for vol in DEMO TWIN; do
  for dept in sales eng 'r&d'; do
    quillsim dir add $vol "/$dept" "/$dept/archive"
    for n in 1 2 3 4 5 6 7 8 9 10; do
      quillsim file add $vol "/$dept/doc$n.txt"
    done
  done
done
quillsim user add admin.corp.ACME.
quillsim user add jdoe.sales.corp.ACME.
quillsim user add 'ops&qa.eng.corp.ACME.'
quillsim user add-ad S-1-5-21-1004336348-1177238915-682003330-1104 'ann.lee'
quillsim user add-ad S-1-5-21-1004336348-1177238915-682003330-1105 'raj.iyer'
echo "   trustees, filters and quotas on DEMO, as an administrator would have set them:"
quillsim trustee add DEMO / admin.corp.ACME. rwcemfa
quillsim trustee add DEMO /sales jdoe.sales.corp.ACME. rwcef
quillsim trustee add DEMO /eng 'ops&qa.eng.corp.ACME.' rf
quillsim trustee add-ad DEMO /eng S-1-5-21-1004336348-1177238915-682003330-1104 rwf
quillsim trustee add-ad DEMO '/r&d/doc3.txt' S-1-5-21-1004336348-1177238915-682003330-1105 r
quillsim trustee add DEMO /sales/doc1.txt admin.corp.ACME. s
quillsim irf set DEMO /sales/archive rf
quillsim irf set DEMO '/r&d' none
quillsim quota user DEMO jdoe.sales.corp.ACME. 1048576
quillsim quota user DEMO ann.lee 2097152 --ad
quillsim quota dir DEMO /sales 10485760
quillsim quota dir DEMO /eng/archive 5242880
quillsim dump DEMO | sed 's/^/   /'

say "trovan save DEMO > demo.xml: the volume's Metadata document"
trovan save DEMO >"$QUILLSIM_ROOT/demo.xml"
sed 's/^/   /' "$QUILLSIM_ROOT/demo.xml"

say "trovan restore TWIN < demo.xml: one request per entry into the empty twin"
quillsim log --clear
trovan restore TWIN <"$QUILLSIM_ROOT/demo.xml"
echo "   $(quillsim log | wc -l) requests sent; the first: $(quillsim log --root-as '$QUILLSIM_ROOT' | head -1)"

say "trovan save TWIN > twin.xml, compared with demo.xml"
trovan save TWIN >"$QUILLSIM_ROOT/twin.xml"
if cmp -s "$QUILLSIM_ROOT/demo.xml" "$QUILLSIM_ROOT/twin.xml"; then
  echo "   both documents agree ($(wc -c <"$QUILLSIM_ROOT/demo.xml") bytes): the twin holds every entry"
else
  echo "   the documents differ:"
  diff "$QUILLSIM_ROOT/demo.xml" "$QUILLSIM_ROOT/twin.xml" || true
  exit 1
fi

say "step into the sandbox (paste these two lines into your shell), then look around:"
printf '   export QUILLSIM_ROOT=%q\n' "$QUILLSIM_ROOT"
printf '   eval "$(%q env)"\n' "$quillsim"
cat <<'TRY'
   trovan save DEMO -m t                  # the trustees alone
   trovan restore TWIN -a < "$QUILLSIM_ROOT/demo.xml"   # -a prints every change made
   quillsim log | tail -3                 # the requests trovan sent, one a line
   quillsim dump TWIN                     # the simulated server's state of TWIN
   man -l doc/trovan.8                    # the manual (examples and notes at the end)
TRY
