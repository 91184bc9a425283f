#!/usr/bin/env bash
# The static checks of the test command; each failure names the files (and lines) at fault:
#   format  every tracked C and C++ file is formatted as .clang-format says
#   tidy    clang-tidy, with the checks .clang-tidy enables, finds nothing in src/ (tests aside)
#           and the simulator (its tests and bench aside); compile commands from a tree of its
#           own, build/tidy, configured with clang
#   layers  every #include in src/ is allowed by the layering table of docs/ARCHITECTURE.md
#
# Usage: scripts/static_checks.sh [format] [tidy] [layers]   (default: all three)
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/require.sh
trovan_require_build_tools
trovan_require clang-format:clang-format clang-tidy:clang-tidy clang++:clang

checks=("$@")
[ ${#checks[@]} -gt 0 ] || checks=(format tidy layers)
jobs=2
failures=0
fail() {
  echo "FAIL: $*" >&2
  failures=$((failures + 1))
}

check_format() {
  local files output status=0 unformatted
  if ! files=$(git ls-files '*.c' '*.cpp' '*.h') || [ -z "$files" ]; then
    fail "no tracked C or C++ files to check (not a git checkout?)"
    return
  fi
  output=$(tr '\n' '\0' <<<"$files" | xargs -0 clang-format --dry-run --Werror 2>&1) || status=$?
  unformatted=$(sed -nE 's/^(.*):[0-9]+:[0-9]+: error: .*clang-format-violations.*/\1/p' \
    <<<"$output" | sort -u)
  if [ -n "$unformatted" ]; then
    fail "not formatted as .clang-format says (clang-format -i FILE):"$'\n'"$unformatted"
  elif [ "$status" -ne 0 ]; then
    fail "clang-format did not run cleanly (status $status):"$'\n'"$output"
  else
    echo "ok: every tracked C and C++ file is formatted as .clang-format says"
  fi
}

# The files clang-tidy looks at: the project's own sources, not its tests.
tidy_sources() {
  python3 - build/tidy/compile_commands.json <<'EOF'
import json, os, re, sys
root = os.getcwd() + "/"
for entry in json.load(open(sys.argv[1])):
    name = os.path.relpath(os.path.join(entry["directory"], entry["file"]), root)
    if re.match(r"src/.*\.(c|cpp)$", name) and not name.endswith("_test.cpp") \
            and not name.endswith("_oracle.cpp"):
        print(name)
    elif re.match(r"sim/.*\.(c|cpp)$", name) and not re.match(r"sim/(tests|bench)/", name):
        print(name)
EOF
}

check_tidy() {
  CC=clang CXX=clang++ cmake -S . -B build/tidy -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_EXPORT_COMPILE_COMMANDS=ON -DTROVAN_TESTS=OFF >/dev/null
  local report=build/tidy/clang-tidy.txt errors=build/tidy/clang-tidy.err findings status=0
  tidy_sources | xargs -P "$jobs" -n 1 clang-tidy -p build/tidy --quiet >"$report" 2>"$errors" ||
    status=$?
  findings=$(grep -E '^[^ ].*:[0-9]+:[0-9]+: (warning|error):' "$report" | sort -u || true)
  if [ -n "$findings" ]; then
    fail "clang-tidy findings (details in $report):"$'\n'"$findings"
  elif [ "$status" -ne 0 ]; then
    fail "clang-tidy did not run cleanly (status $status):"$'\n'"$(grep -v 'warnings\? generated' "$errors")"
  else
    echo "ok: clang-tidy finds nothing in $(tidy_sources | wc -l) files of src/ and sim/"
  fi
}

check_layers() {
  if python3 scripts/check_layers.py; then :; else fail "includes that break the layering"; fi
}

for check in "${checks[@]}"; do
  case $check in
    format | tidy | layers) "check_$check" ;;
    *) echo "static_checks.sh: unknown check $check (format, tidy, layers)" >&2; exit 2 ;;
  esac
done
if ((failures > 0)); then
  echo "static checks: $failures check(s) failed" >&2
  exit 1
fi
echo "static checks: all passed"
