#!/usr/bin/env bash
# Builds the Debian package of trovan, unpacks it with dpkg -x into a temporary root as a fresh
# machine would receive it, and checks what it holds: the package fields, the exact file list,
# the libraries the program needs, that it starts no thread, and the installed program, manual
# page and completion at work.
#
# Usage: scripts/check_package.sh [--build-dir DIR] [--root DIR] [--transcripts] [--print-binary]
#   --build-dir DIR   the Release tree to build in (default build/release, reused when it
#                     exists: only the program and its manual page are built)
#   --root DIR        unpack into DIR and keep it (default: a temporary folder, removed at exit)
#   --transcripts     also run the command-line transcripts (tests/cli/*.t) against the
#                     installed binary, under the simulator of the same tree
#   --print-binary    print the installed binary's path as the last line; the root is then
#                     kept, to use that binary afterwards
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/require.sh
trovan_require_build_tools
trovan_require dpkg-deb:dpkg cpack:cmake groff:groff man:man-db bats:bats readelf:binutils \
  nm:binutils

build_dir=build/release
root=''
transcripts=0
print_binary=0
while [ $# -gt 0 ]; do
  case $1 in
    --build-dir) build_dir=$2; shift 2 ;;
    --root) root=$2; shift 2 ;;
    --transcripts) transcripts=1; shift ;;
    --print-binary) print_binary=1; shift ;;
    -h | --help) sed -n '2,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//'; exit 0 ;;
    *) echo "check_package.sh: unknown argument $1" >&2; exit 2 ;;
  esac
done

if [ -z "$root" ]; then
  root=$(mktemp -d "${TMPDIR:-/tmp}/trovan-package.XXXXXX")
  # A root whose binary is printed stays for whoever uses it.
  ((print_binary)) || trap 'rm -rf "$root"' EXIT
else
  rm -rf "$root"
  mkdir -p "$root"
fi
root=$(cd "$root" && pwd)

failures=0
fail() {
  echo "FAIL: $*" >&2
  failures=$((failures + 1))
}
pass() { echo "ok: $*"; }

# The package build: the one Release tree (build/release) that the README, the demo and the test
# command use, reused as it is when it exists. Only what the package carries is built, and
# packing installs without building everything else first (CMAKE_SKIP_INSTALL_ALL_DEPENDENCY
# changes no compile flag, so setting it on an existing tree rebuilds nothing).
echo "== building the package in $build_dir"
if [ "$(sed -n 's/^CMAKE_BUILD_TYPE:[A-Z]*=//p' "$build_dir/CMakeCache.txt" 2>/dev/null)" != Release ] ||
  ! grep -q '^CMAKE_SKIP_INSTALL_ALL_DEPENDENCY:[A-Z]*=ON$' "$build_dir/CMakeCache.txt"; then
  cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_SKIP_INSTALL_ALL_DEPENDENCY=ON >/dev/null
fi
ninja -C "$build_dir" trovan man_page trovanctl trovanctl_man_page >/dev/null
rm -f "$build_dir"/trovan_*.deb
(cd "$build_dir" && cpack -G DEB >/dev/null)
shopt -s nullglob
packages=("$build_dir"/trovan_*.deb)
shopt -u nullglob
[ ${#packages[@]} -eq 1 ] || { echo "FAIL: expected one trovan_*.deb in $build_dir" >&2; exit 1; }
deb=${packages[0]}
echo "== $deb"

# Package fields.
field() { dpkg-deb -f "$deb" "$1"; }
version=$(sed -nE 's/^project\(trovan VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
expect_field() { # expect_field NAME VALUE
  local actual
  actual=$(field "$1")
  if [ "$actual" = "$2" ]; then pass "$1: $2"; else fail "$1 is \"$actual\", not \"$2\""; fi
}
expect_field Package trovan
expect_field Version "$version"
expect_field Maintainer "trovan developers"
expect_field Section admin
expect_field Architecture "$(dpkg --print-architecture)"
depends=$(field Depends)
for library in libc6 libstdc++6 libxml2; do
  if [[ ", $depends," =~ ,\ ${library//+/\\+}[\ ,] ]]; then
    pass "Depends names $library"
  else
    fail "Depends ($depends) does not name $library"
  fi
done

# The exact list of files: nothing of the build, the tests or the simulator slips in.
expected_files='./usr/sbin/trovan
./usr/sbin/trovanctl
./usr/share/bash-completion/completions/trovan
./usr/share/bash-completion/completions/trovanctl
./usr/share/doc/trovan/copyright
./usr/share/man/man8/trovan.8.gz
./usr/share/man/man8/trovanctl.8.gz'
actual_files=$(dpkg-deb -c "$deb" | awk '$1 !~ /^d/ { print $NF }' | sort)
if [ "$actual_files" = "$expected_files" ]; then
  pass "the package holds exactly: $(tr '\n' ' ' <<<"$actual_files")"
else
  fail "the package's files differ:"$'\n'"$(diff <(echo "$expected_files") <(echo "$actual_files"))"
fi
for program in trovan trovanctl; do
  mode=$(dpkg-deb -c "$deb" | awk -v name="./usr/sbin/$program" '$NF == name { print $1 }')
  if [ "$mode" = -rwxr-xr-x ]; then
    pass "usr/sbin/$program is $mode"
  else
    fail "usr/sbin/$program is $mode"
  fi
done

# Unpack as a fresh machine would.
dpkg -x "$deb" "$root"
binary=$root/usr/sbin/trovan
echo "== unpacked into $root"

# The program needs the C++ runtime and the C library only, no newer than the package says.
needed=$(readelf -d "$binary" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p' | sort | tr '\n' ' ')
unexpected=$(tr ' ' '\n' <<<"$needed" | grep -vxE 'libc\.so\.6|libm\.so\.6|libstdc\+\+\.so\.6|libgcc_s\.so\.1|' || true)
if [ -z "$unexpected" ]; then pass "needs only: $needed"; else fail "needs other libraries: $unexpected"; fi
newest_glibc=$(readelf -V --wide "$binary" | grep -oE 'GLIBC_[0-9]+\.[0-9]+' | sed 's/GLIBC_//' |
  sort -uV | tail -1)
declared_glibc=$(sed -nE 's/.*libc6 \(>= ([0-9.]+)\).*/\1/p' <<<"$depends")
if [ -z "$declared_glibc" ] ||
  [ "$(printf '%s\n%s\n' "$newest_glibc" "$declared_glibc" | sort -V | tail -1)" = "$declared_glibc" ]; then
  pass "C library symbols up to $newest_glibc, package asks for libc6 ${declared_glibc:-(any)}"
else
  fail "the program uses GLIBC_$newest_glibc but the package asks only for libc6 >= $declared_glibc"
fi

# One thread: the program asks for nothing that starts another.
if threads=$(scripts/check_no_threads.sh "$binary" 2>&1); then pass "$threads"; else fail "$threads"; fi
# trovanctl needs, beside those, the XML parser the package depends on.
ctl_binary=$root/usr/sbin/trovanctl
needed=$(readelf -d "$ctl_binary" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p' | sort | tr '\n' ' ')
unexpected=$(tr ' ' '\n' <<<"$needed" |
  grep -vxE 'libc\.so\.6|libm\.so\.6|libstdc\+\+\.so\.6|libgcc_s\.so\.1|libxml2\.so\.2|' || true)
if [ -z "$unexpected" ]; then pass "trovanctl needs only: $needed"; else fail "trovanctl needs other libraries: $unexpected"; fi
if threads=$(scripts/check_no_threads.sh "$ctl_binary" 2>&1); then pass "trovanctl: $threads"; else fail "trovanctl: $threads"; fi

# The installed program runs.
set +e
version_text=$("$binary" --version)
version_status=$?
"$binary" --help >"$root/help.out"
help_status=$?
set -e
expected_version="trovan (QUILL) $version"$'\n'"Copyright (C) 2026 the trovan developers. Free software under the MIT License."
if [ "$version_status" -eq 0 ] && [ "$version_text" = "$expected_version" ]; then
  pass "trovan --version: $(head -1 <<<"$version_text")"
else
  fail "trovan --version gave status $version_status and:"$'\n'"$version_text"
fi
if [ "$help_status" -eq 0 ] && cmp -s "$root/help.out" tests/cli/data/help.txt; then
  pass "trovan --help is tests/cli/data/help.txt"
else
  fail "trovan --help (status $help_status) differs from tests/cli/data/help.txt"
fi
rm -f "$root/help.out"
set +e
ctl_version=$("$ctl_binary" --version)
ctl_version_status=$?
"$ctl_binary" check --help >/dev/null
ctl_help_status=$?
set -e
if [ "$ctl_version_status" -eq 0 ] && [ "$ctl_version" = "trovanctl (QUILL) $version"$'\n'"$(tail -1 <<<"$expected_version")" ]; then
  pass "trovanctl --version: $(head -1 <<<"$ctl_version")"
else
  fail "trovanctl --version gave status $ctl_version_status and:"$'\n'"$ctl_version"
fi
if [ "$ctl_help_status" -eq 0 ]; then pass "trovanctl check --help"; else fail "trovanctl check --help gave status $ctl_help_status"; fi

# The installed manual pages render without a warning.
for page in trovan trovanctl; do
  man_page=$root/usr/share/man/man8/$page.8.gz
  warnings=$(MANWIDTH=80 man --warnings -l "$man_page" 2>&1 >/dev/null)
  rendered=$(MANWIDTH=80 man -l "$man_page" 2>/dev/null)
  if [ -z "$warnings" ] && grep -q '^NAME' <<<"$rendered"; then
    pass "man $page renders cleanly"
  else
    fail "man -l $man_page:"$'\n'"$warnings"
  fi
done

# The installed completion passes the completion tests.
if TROVAN_COMPLETION_SCRIPT=$root/usr/share/bash-completion/completions/trovan \
  bats tests/completion/trovan_completion.bats >/dev/null; then
  pass "the installed completion passes tests/completion/trovan_completion.bats"
else
  fail "the installed completion fails tests/completion/trovan_completion.bats"
fi
if TROVANCTL_COMPLETION_SCRIPT=$root/usr/share/bash-completion/completions/trovanctl \
  bats tests/completion/trovanctl_completion.bats >/dev/null; then
  pass "the installed completion passes tests/completion/trovanctl_completion.bats"
else
  fail "the installed completion fails tests/completion/trovanctl_completion.bats"
fi

# The command-line suite against the installed binary, under the simulator of the same tree
# (a test tool, not part of the package).
if ((transcripts)); then
  echo "== command-line transcripts against $binary"
  ninja -C "$build_dir" quillsim_all >/dev/null
  scripts=(tests/cli/*.t)
  # The tool that prints what check computes comes from the tree's tests; without them, the
  # transcript that needs it is left out (the test suite runs it).
  if ninja -C "$build_dir" check_requests >/dev/null 2>&1; then
    TROVAN_CHECK_REQUESTS=$(cd "$build_dir" && pwd)/tests/check_requests
    export TROVAN_CHECK_REQUESTS
  else
    echo "note: $build_dir has no check_requests (tests off): trovanctl_check_same_requests.t left out"
    kept=()
    for script in "${scripts[@]}"; do
      [ "$script" = tests/cli/trovanctl_check_same_requests.t ] || kept+=("$script")
    done
    scripts=("${kept[@]}")
  fi
  if python3 tests/cli/run_transcript.py --bin-dir "$root/usr/sbin" \
    --quillsim "$build_dir/sim/quillsim" "${scripts[@]}"; then
    pass "the command-line transcripts pass with the installed binary"
  else
    fail "command-line transcripts fail with the installed binary"
  fi
fi

if ((failures > 0)); then
  echo "check_package: $failures check(s) failed" >&2
  exit 1
fi
echo "check_package: $deb is complete and its program works"
((print_binary)) && echo "$binary"
exit 0
