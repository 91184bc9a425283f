#!/bin/bash
# The demo: builds the tree, seeds a simulated volume and runs trovan against it.
#   sim/demo.sh [BUILD_DIR]
# Once save and restore exist it saves DEMO, restores the document into the empty twin TWIN,
# saves TWIN and shows that both documents agree.
set -eu
SRC=$(cd "$(dirname "$0")/.." && pwd)
BUILD=${1:-$SRC/build}
cmake -S "$SRC" -B "$BUILD" -G Ninja >/dev/null
ninja -C "$BUILD" >/dev/null
Q=$BUILD/sim/quillsim
QUILLSIM_ROOT=$(mktemp -d /tmp/quillsim-demo.XXXXXX)
export QUILLSIM_ROOT
"$Q" init
eval "$("$Q" env)"

echo "== a demo volume in $QUILLSIM_ROOT"
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

if [ ! -x "$BUILD/trovan" ]; then
  echo "== trovan is not built yet; the volume's info files:"
  cat /_admin/Manage_QUILL/Volume/DEMO/TrusteeInfo.xml
  exit 0
fi
echo "== trovan save DEMO"
"$BUILD/trovan" save DEMO >"$QUILLSIM_ROOT/demo.xml"
cat "$QUILLSIM_ROOT/demo.xml"
echo "== trovan restore TWIN (an empty twin), then trovan save TWIN"
"$BUILD/trovan" restore TWIN <"$QUILLSIM_ROOT/demo.xml"
"$BUILD/trovan" save TWIN >"$QUILLSIM_ROOT/twin.xml"
if cmp -s "$QUILLSIM_ROOT/demo.xml" "$QUILLSIM_ROOT/twin.xml"; then
  echo "== both documents agree ($(wc -c <"$QUILLSIM_ROOT/demo.xml") bytes)"
else
  echo "== the documents differ:"
  diff "$QUILLSIM_ROOT/demo.xml" "$QUILLSIM_ROOT/twin.xml" || true
  exit 1
fi
echo "== requests sent: $(quillsim log | wc -l)"
