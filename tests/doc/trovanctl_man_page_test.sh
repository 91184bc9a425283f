#!/bin/bash
# Checks the manual page trovanctl(8): it renders without a warning, it documents every option
# of every command's help, every finding code the program can report and every field of its
# JSON output, its version is the project's, and every command of its EXAMPLES is run by the
# examples transcript.
#
# Usage: trovanctl_man_page_test.sh PAGE TROVANCTL SOURCE_DIR VERSION EXAMPLES_TRANSCRIPT
set -u
export LC_ALL=C.UTF-8

page=$1 program=$2 source_dir=$3 version=$4 transcript=$5
failures=0
fail() {
  echo "FAIL: $*"
  failures=$((failures + 1))
}

warnings=$(groff -man -ww -z "$page" 2>&1)
[[ -z $warnings ]] || fail "groff -man -ww -z reports:"$'\n'"$warnings"
if command -v man >/dev/null; then
  warnings=$(MANWIDTH=80 man --warnings -l "$page" 2>&1 >/dev/null)
  [[ -z $warnings ]] || fail "man --warnings -l reports:"$'\n'"$warnings"
fi
bare=$(grep -nE '(^|[ ("])-{1,2}[a-zA-Z]|\\-[a-z]+-[a-z]' "$page" | grep -v '^[0-9]*:\.\\"' || true)
[[ -z $bare ]] || fail "options written with a bare hyphen:"$'\n'"$bare"

rendered=$(groff -man -Tutf8 -P-cbou -rLL=80n "$page" 2>/dev/null)
section() { # the lines of the rendered section $1, headings excluded
  awk -v name="$1" '/^[A-Z][A-Z ]*$/ { inside = ($0 == name); next } inside' <<<"$rendered"
}
options=$(section OPTIONS)
output=$(section OUTPUT)
examples=$(section EXAMPLES)

# Every long option of the program's and every command's help.
commands=$("$program" --help | sed -nE 's/^  ([a-z]+) .*/\1/p')
[[ -n $commands ]] || fail "no commands in trovanctl --help"
for help in "" $commands; do
  while read -r long; do
    [[ -z $long || $long == --help ]] && continue
    grep -qF -- "$long" <<<"$options" || fail "OPTIONS does not name $long (${help:-program})"
  done < <("$program" $help --help | grep -oE -- '--[a-z][a-z-]*' | sort -u)
done

# Every finding code of the sources.
codes=$(ls "$source_dir"/src/model/*.cpp "$source_dir"/src/ctl/*.cpp | grep -v '_test\.cpp$' |
  xargs grep -ohE '(report\(|sink\(\{|findings_\(\{)[^"]*"[a-z]+(-[a-z]+)*"' | sed -E 's/.*"([a-z-]+)"$/\1/' |
  sort -u)
[[ -n $codes ]] || fail "no finding codes found in the sources"
for code in $codes; do
  grep -qE "(^|[ ,])$code(,|$)" <<<"$output" || fail "OUTPUT does not describe the code $code"
done

# Every field of the JSON output, findings and summary.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
printf '<metadata><trusteeInfo><trustee/></trusteeInfo></metadata>\n' >"$work/doc.xml"
fields=$("$program" check --json "$work/doc.xml" | grep -oE '"[a-zA-Z]+":' | tr -d '":' | sort -u)
[[ -n $fields ]] || fail "no JSON fields in the output of check --json"
for field in $fields; do
  grep -qE "(^| )$field(,|$| )" <<<"$output" || fail "OUTPUT does not describe the field $field"
done

grep -qE "^trovan $version +" <<<"$rendered" || fail "the page is not marked trovan $version"

example_commands=$(sed -nE 's/^ +((xmllint .*\| )?trovanctl .*)$/\1/p' <<<"$examples")
[[ -n $example_commands ]] || fail "no example commands found"
while read -r command; do
  [[ -z $command ]] && continue
  grep -qxF -- "    \$ $command" "$transcript" ||
    fail "example not run by $(basename "$transcript"): $command"
done <<<"$example_commands"

if ((failures > 0)); then
  echo "$failures check(s) failed"
  exit 1
fi
echo "trovanctl(8) is complete"
