# What a program leaves behind: descriptors on simulated files and files it made in /tmp.
. "$(dirname "$0")/lib.sh"
setup
quillsim volume add VOL1
cd "$QUILLSIM_ROOT"

expect "nothing recorded at first" "" "$(quillsim log --leaks)"

read -r pid name command info table dir copy <<<"$("$T/quillsim_leaker" leave)"
# Descriptors are listed in increasing order, which is the order the program opened them in.
expect "every descriptor and the temporary file left" "quillsim_leaker[$pid]: descriptor $command left open on /_admin/Manage_QUILL/files.cmd
quillsim_leaker[$pid]: descriptor $info left open on /_admin/Manage_QUILL/Volume/VOL1/UserInfo.xml
quillsim_leaker[$pid]: descriptor $table left open on /etc/mtab
quillsim_leaker[$pid]: descriptor $dir left open on /_admin/Manage_QUILL
quillsim_leaker[$pid]: descriptor $copy left open on /_admin/Manage_QUILL/files.cmd
quillsim_leaker[$pid]: temporary file $name left behind" "$(quillsim log --leaks)"
rm -f "$name"
expect "a temporary file removed later is no longer reported" 5 "$(quillsim log --leaks | wc -l)"
quillsim log --leaks --clear
expect "--clear forgets the records" "" "$(quillsim log --leaks)"

read -r pid name _ <<<"$("$T/quillsim_leaker" tidy)"
expect "a program that closes and removes everything leaves nothing" "" "$(quillsim log --leaks)"
expect "the temporary file was recorded all the same" "quillsim_leaker[$pid] $name" "$(cat sim/tmpfiles.log)"
expect "and is gone" "" "$(ls "$name" 2>/dev/null)"

"$T/quillsim_leaker" stdin >/dev/null
expect "an info file left on standard input is not a leak" "" "$(quillsim log --leaks)"

bash -c 'exec 3</_admin/Manage_QUILL/manage.cmd; /bin/true; true'
expect "a descriptor inherited by a child counts for both" "2" "$(quillsim log --leaks | grep -c 'descriptor 3 left open on /_admin/Manage_QUILL/manage.cmd')"

# In a sanitizer build every program of the sandbox runs with the sanitizer's runtime preloaded.
# A leak of a program built with the sanitizer is reported and fails it; the exit-time leaks of
# the system's tools (sort loses a few bytes on purpose) are not judged.
if [ "${QUILLSIM_SANITIZE:-OFF}" = ON ]; then
  export ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=1
  "$T/quillsim_leaker" heap 2>"$QUILLSIM_ROOT/err"
  status=$?
  expect "a leak of an instrumented program fails it" "failed 1" \
    "$([ $status -ne 0 ] && echo failed) $(grep -c 'ERROR: LeakSanitizer' "$QUILLSIM_ROOT/err")"
  sorted=$(printf 'b\na\n' | sort 2>&1)
  status=$?
  expect "a system tool is not judged" "a b 0" "$(echo $sorted) $status"
fi
finish
