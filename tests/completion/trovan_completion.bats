#!/usr/bin/env bats
# The bash completion of trovan: each test sets the words of a command line and the cursor,
# runs the completion function and compares the candidates it offers.

setup() {
  # shellcheck source=../../completion/trovan
  source "${TROVAN_COMPLETION_SCRIPT:-$BATS_TEST_DIRNAME/../../completion/trovan}"
  export TROVAN_COMPLETION_MTAB=$BATS_TEST_TMPDIR/mtab
  local long_name
  long_name=$(printf 'L%.0s' {1..300})
  cat >"$TROVAN_COMPLETION_MTAB" <<EOF
proc /proc proc rw,nosuid,nodev,noexec,relatime 0 0
VOL1 /media/quill/VOL1 quillvol rw,name=VOL1 0 0
/dev/pool/DATA /media/quill/DATA quillvol rw,name=DATA2,noatime 0 0
ARCHIVE /media/quill/ARCHIVE quillvol ARCHIVE 0 0
LONG /media/quill/LONG quillvol name=$long_name 0 0
NOTQUILL /mnt/other nfs rw,name=NFSVOL 0 0
EOF
}

# complete WORD... : the last word is the one under the cursor; prints the candidates, one a
# line, in the order offered.
complete_words() {
  COMP_WORDS=("$@")
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  COMP_LINE="$*"
  COMP_POINT=${#COMP_LINE}
  _trovan
  printf '%s\n' "${COMPREPLY[@]}"
}

@test "the completion is registered for trovan" {
  run complete -p trovan
  [ "$output" = "complete -F _trovan trovan" ]
}

@test "the first argument is an action" {
  run complete_words trovan ''
  [ "$output" = $'save\nrestore' ]
  run complete_words trovan re
  [ "$output" = restore ]
}

@test "the second argument is a QUILL volume of the mount table, by device and by name=" {
  run complete_words trovan save ''
  [ "$output" = $'/dev/pool/DATA\nARCHIVE\nDATA2\nL'"$(printf 'L%.0s' {1..254})"$'\nLONG\nVOL1' ]
}

@test "volume names are completed from what is typed; other file systems never show" {
  run complete_words trovan restore D
  [ "$output" = DATA2 ]
  run complete_words trovan save N
  [ "$output" = "" ]
}

@test "the action word is recognised whatever its case" {
  run complete_words trovan SAVE V
  [ "$output" = VOL1 ]
}

@test "options before the action do not count as arguments" {
  run complete_words trovan -m t -k save V
  [ "$output" = VOL1 ]
}

@test "no third argument is offered" {
  run complete_words trovan save VOL1 ''
  [ "$output" = "" ]
}

@test "a missing mount table offers no volume and prints nothing" {
  TROVAN_COMPLETION_MTAB=$BATS_TEST_TMPDIR/absent
  run complete_words trovan save ''
  [ "$status" -eq 0 ]
  [ "$output" = "" ]
}

@test "save offers the options of save, with --mask and not --meta" {
  run complete_words trovan save VOL1 -
  [ "$output" = $'-m\n-n\n-p\n-u\n--mask=\n--rxl\n--path=\n--usertype=' ]
}

@test "restore offers the options of restore" {
  run complete_words trovan restore VOL1 --
  [ "$output" = $'--actions\n--filter=\n--mask=\n--usertype=\n--tree=\n--rxl\n--inputfilefromkestrel\n--relativepathprefix=\n--no-gemel' ]
  run complete_words trovan restore VOL1 --no
  [ "$output" = --no-gemel ]
}

@test "before the action every option is offered once, help and version included" {
  run complete_words trovan -
  [ "${lines[0]}" = -h ]
  [ "${lines[1]}" = -v ]
  [ "$(printf '%s\n' "${lines[@]}" | sort | uniq -d)" = "" ]
  [[ " ${lines[*]} " == *" --inputfilefromkestrel "* ]]
  [[ " ${lines[*]} " == *" --path= "* ]]
  [[ " ${lines[*]} " != *" --debug "* ]]
  [[ " ${lines[*]} " != *" --meta"* ]]
}

@test "a mask for save offers every letter, remove-invalid included" {
  run complete_words trovan save VOL1 -m ''
  [ "$output" = $'t\nu\nd\na\nr' ]
}

@test "a mask for restore does not offer r" {
  run complete_words trovan restore VOL1 -m ''
  [ "$output" = $'t\nu\nd\na' ]
}

@test "a mask grows by the letters it does not hold yet" {
  run complete_words trovan save VOL1 -m ud
  [ "$output" = $'ud\nudt\nuda\nudr' ]
}

@test "a mask with a letter that is no metadata type is not completed" {
  run complete_words trovan save VOL1 -m tx
  [ "$output" = "" ]
  run complete_words trovan save VOL1 -m T
  [ "$output" = "" ]
}

@test "--mask= split into words by bash completes the mask" {
  run complete_words trovan save VOL1 --mask = ''
  [ "$output" = $'t\nu\nd\na\nr' ]
  run complete_words trovan restore VOL1 --mask = t
  [ "$output" = $'t\ntu\ntd\nta' ]
}

@test "--mask=LETTERS in one word keeps its option in the candidates" {
  run complete_words trovan save VOL1 --mask=t
  [ "$output" = $'--mask=t\n--mask=tu\n--mask=td\n--mask=ta\n--mask=tr' ]
}

@test "an abbreviated long option is recognised as the program recognises it" {
  run complete_words trovan save VOL1 --ma ''
  [ "$output" = $'t\nu\nd\na\nr' ]
  run complete_words trovan restore VOL1 --user ''
  [ "$output" = $'arbor\nad' ]
}

@test "a mask attached to -m, also at the end of a cluster" {
  run complete_words trovan save VOL1 -mt
  [ "$output" = $'-mt\n-mtu\n-mtd\n-mta\n-mtr' ]
  run complete_words trovan restore VOL1 -kmu
  [ "$output" = $'-kmu\n-kmut\n-kmud\n-kmua' ]
}

@test "user types are arbor and ad" {
  run complete_words trovan save VOL1 -u ''
  [ "$output" = $'arbor\nad' ]
  run complete_words trovan restore VOL1 -u ar
  [ "$output" = arbor ]
  run complete_words trovan restore VOL1 --usertype = a
  [ "$output" = $'arbor\nad' ]
}

@test "after -n only arbor is offered, since -n -u ad is refused" {
  run complete_words trovan restore VOL1 -n -u ''
  [ "$output" = arbor ]
  run complete_words trovan restore VOL1 -kn -u ''
  [ "$output" = arbor ]
  run complete_words trovan save VOL1 --rxl --usertype = ''
  [ "$output" = arbor ]
}

@test "free-form arguments get no candidates" {
  for option in -p -f -t -r --path --filter --tree --relativepathprefix; do
    run complete_words trovan restore VOL1 "$option" ''
    [ "$output" = "" ]
  done
}

@test "the word after an option's argument is completed again" {
  run complete_words trovan -u arbor save ''
  [ "${lines[0]}" = /dev/pool/DATA ]
  run complete_words trovan --mask = t re
  [ "$output" = restore ]
}
