#!/usr/bin/env bats
# The bash completion of trovanctl: each test sets the words of a command line and the cursor,
# runs the completion function and compares the candidates it offers.

setup() {
  # shellcheck source=../../completion/trovanctl
  source "${TROVANCTL_COMPLETION_SCRIPT:-$BATS_TEST_DIRNAME/../../completion/trovanctl}"
  export TROVANCTL_COMPLETION_MTAB=$BATS_TEST_TMPDIR/mtab
  cat >"$TROVANCTL_COMPLETION_MTAB" <<EOF2
proc /proc proc rw 0 0
VOL1 /media/quill/VOL1 quillvol rw,name=VOL1 0 0
DATA /media/quill/DATA quillvol rw 0 0
NFS /mnt/other nfs rw 0 0
EOF2
  cd "$BATS_TEST_TMPDIR"
  touch saved.xml second.xml
}

complete_words() {
  COMP_WORDS=("$@")
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  COMP_LINE="$*"
  COMP_POINT=${#COMP_LINE}
  _trovanctl
  printf '%s\n' "${COMPREPLY[@]}"
}

@test "the completion is registered for trovanctl" {
  run complete -p trovanctl
  [ "$output" = "complete -F _trovanctl trovanctl" ]
}

@test "the first word is a command" {
  run complete_words trovanctl ''
  [ "$output" = $'check\ndiff\nconvert\nmap\nreport\nplan\napply\nverify\n--help\n--version' ]
  run complete_words trovanctl ch
  [ "$output" = check ]
}

@test "the options of check" {
  run complete_words trovanctl check --m
  [ "$output" = $'--meta\n--mount-point' ]
  run complete_words trovanctl check --j
  [ "$output" = --json ]
}

@test "mask letters, user types and volumes" {
  run complete_words trovanctl check -m t
  [ "$output" = $'t\ntu\ntd\nta' ]
  run complete_words trovanctl check --usertype a
  [ "$output" = $'arbor\nad' ]
  run complete_words trovanctl check --volume ''
  [ "$output" = $'VOL1\nDATA' ]
}

@test "the document is a file name" {
  run complete_words trovanctl check s
  [ "$(sort <<<"$output")" = $'saved.xml\nsecond.xml' ]
}

@test "the options of diff, convert and map" {
  run complete_words trovanctl diff --k
  [ "$output" = --kind ]
  run complete_words trovanctl diff --kind u
  [ "$output" = user-quota ]
  run complete_words trovanctl convert --r
  [ "$output" = $'--relative\n--raw' ]
  run complete_words trovanctl map --d
  [ "$output" = --drop-unmapped ]
  run complete_words trovanctl map --re
  [ "$output" = $'--rebase\n--repair-end-tags' ]
}

@test "diff, map and report take vol:NAME for a live volume" {
  run complete_words trovanctl diff saved.xml vol:V
  [ "$output" = vol:VOL1 ]
  run complete_words trovanctl report vol:V
  [ "$output" = vol:VOL1 ]
  run complete_words trovanctl convert vol:V
  [ "$output" = "" ]
}

@test "the options of report and their values" {
  run complete_words trovanctl report --ef
  [ "$output" = $'--effective\n--effective-all' ]
  run complete_words trovanctl report --by ''
  [ "$output" = $'path\nuser' ]
  run complete_words trovanctl report --format c
  [ "$output" = csv ]
  run complete_words trovanctl report --kind d
  [ "$output" = dir-quota ]
  run complete_words trovanctl report --user ''
  [ "$output" = '' ]
  run complete_words trovanctl report --html sa
  [ "$output" = saved.xml ]
}

@test "plan, apply and verify: a volume first, then the document" {
  run complete_words trovanctl apply ''
  [ "$output" = $'VOL1\nDATA' ]
  run complete_words trovanctl plan -m t V
  [ "$output" = VOL1 ]
  run complete_words trovanctl verify VOL1 sa
  [ "$output" = saved.xml ]
}

@test "the options of apply" {
  run complete_words trovanctl apply VOL1 saved.xml --no
  [ "$output" = $'--no-gemel\n--no-wait' ]
  run complete_words trovanctl apply VOL1 saved.xml --re
  [ "$output" = --rejects ]
}
