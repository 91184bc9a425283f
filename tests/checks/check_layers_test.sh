#!/usr/bin/env bash
# scripts/check_layers.py against a small tree: each include the table forbids is named with its
# file, line and edge; allowed ones, system headers and unit tests pass.
set -uo pipefail
checker=$(cd "$(dirname "$0")/../.." && pwd)/scripts/check_layers.py
tree=$(mktemp -d "${TMPDIR:-/tmp}/check_layers.XXXXXX")
trap 'rm -rf "$tree"' EXIT
cd "$tree"
cat >table.md <<'TABLE'
<!-- layers:begin -->
| folder | may include |
|---|---|
| `cli` | `save` |
| `document` | |
| `save` | `document` `cli/options.h` |
<!-- layers:end -->
TABLE
mkdir -p src/cli src/document src/save src/extra
touch src/cli/options.h src/cli/run.h src/save/plan.h src/document/text.h
printf '#include <string>\n#include "save/plan.h"\n' >src/cli/run.cpp
printf '#include "document/text.h"\n#include "cli/options.h"\n#include "plan.h"\n' >src/save/plan.cpp
printf '#include <cstdio>\n  #  include "cli/run.h"\n' >src/save/driver.cpp
printf '#include "save/plan.h"\n#include "fixture.h"\n' >src/document/text.cpp
printf '#include "cli/run.h"\n#include "fixture.h"\n' >src/document/text_test.cpp

expected="src/document/text.cpp:1: document -> save (save/plan.h)
src/document/text.cpp:2: document -> a header outside src/ (fixture.h)
src/extra: folder missing from the layering table
src/save/driver.cpp:2: save -> cli (cli/run.h)
check_layers: 4 finding(s) against the layering of table.md"
actual=$(python3 "$checker" --src src --table table.md)
status=$?
if [ "$status" -eq 1 ] && [ "$actual" = "$expected" ]; then
  echo "ok: forbidden includes named, allowed ones passed"
else
  echo "FAIL: status $status (expected 1), output:"
  diff <(echo "$expected") <(echo "$actual")
  exit 1
fi

rm -r src/extra src/document/text.cpp src/save/driver.cpp
actual=$(python3 "$checker" --src src --table table.md)
status=$?
if [ "$status" -eq 0 ] && [ "$actual" = "check_layers: every include in src/ follows table.md" ]; then
  echo "ok: a tree that follows the table passes"
else
  echo "FAIL: status $status (expected 0), output:"$'\n'"$actual"
  exit 1
fi
