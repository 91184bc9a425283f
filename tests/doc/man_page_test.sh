#!/bin/bash
# Checks the manual page: it renders without a single warning, its OPTIONS section documents
# every option of the help text and of the program's option table, its version is the
# project's, and every command of its EXAMPLES and NOTES is run by one of the transcripts.
#
# Usage: man_page_test.sh PAGE HELP_TEXT OPTION_TABLE_SOURCE VERSION TRANSCRIPT...
set -u
export LC_ALL=C.UTF-8

page=$1 help_text=$2 option_source=$3 version=$4
shift 4
transcripts=("$@")
failures=0

fail() {
  echo "FAIL: $*"
  failures=$((failures + 1))
}

# 1. groff itself, with every warning category turned on.
warnings=$(groff -man -ww -z "$page" 2>&1)
[[ -z $warnings ]] || fail "groff -man -ww -z reports:"$'\n'"$warnings"

# 2. man as an administrator runs it, with its own warnings turned on.
if command -v man >/dev/null; then
  warnings=$(MANWIDTH=80 man --warnings -l "$page" 2>&1 >/dev/null)
  [[ -z $warnings ]] || fail "man --warnings -l reports:"$'\n'"$warnings"
fi

# 3. The NAME section is one that the manual database indexer understands.
if command -v lexgrog >/dev/null; then
  lexgrog "$page" >/dev/null 2>&1 || fail "lexgrog cannot parse the NAME section"
fi

# 4. Options are written with \- (a minus that can be copied into a shell), never a bare -.
bare=$(grep -nE '(^|[ ("])-{1,2}[a-zA-Z]|\\-[a-z]+-[a-z]' "$page" | grep -v '^[0-9]*:\.\\"' || true)
[[ -z $bare ]] || fail "options written with a bare hyphen:"$'\n'"$bare"

# The page as text.
rendered=$(groff -man -Tutf8 -P-cbou -rLL=80n "$page" 2>/dev/null)
section() { # prints the lines of the rendered section $1, headings excluded
  awk -v name="$1" '/^[A-Z][A-Z ]*$/ { inside = ($0 == name); next } inside' <<<"$rendered"
}
options=$(section OPTIONS)
examples=$(section EXAMPLES)
notes=$(section NOTES)
[[ -n $options ]] || fail "no OPTIONS section"
[[ -n $examples ]] || fail "no EXAMPLES section"

# 5. Every option of the help text: its short form heads an item and its long form (as the
# help text spells it: --meta included) is named in the section.
help_options=$(grep -oE '^ +-[a-zA-Z], --[a-z-]+' "$help_text" | sort -u)
[[ -n $help_options ]] || fail "no options found in $help_text"
while read -r short long; do
  [[ -z $short ]] && continue
  grep -qE "^ {7}${short%,}, --" <<<"$options" || fail "OPTIONS has no item for ${short%,}"
  grep -qF -- "$long" <<<"$options" || fail "OPTIONS does not name $long"
done <<<"$help_options"

# 6. Every option the program accepts, with the long name it really accepts.
table=$(grep -oE '\{"[a-z-]+", (no|required|optional)_argument, nullptr, '"'"'.'"'"'\}' \
  "$option_source" | sed -E "s/^\{\"([a-z-]+)\".*'(.)'\}$/\2 \1/")
[[ -n $table ]] || fail "no long options found in $option_source"
while read -r letter name; do
  [[ -z $letter ]] && continue
  grep -qE "^ {7}-$letter, --$name([= ]|$)" <<<"$options" ||
    fail "OPTIONS has no item \"-$letter, --$name\""
done <<<"$table"

# 7. The version in the page footer is the program's.
grep -qE "^trovan $version +" <<<"$rendered" || fail "the page is not marked trovan $version"

# 8. Every example command, of EXAMPLES and of NOTES, is run exactly as written by a transcript.
commands=$(sed -nE 's/^ +(trovan .*)$/\1/p' <<<"$examples"$'\n'"$notes")
[[ -n $commands ]] || fail "no example commands found"
while read -r command; do
  [[ -z $command ]] && continue
  grep -qxF -- "    \$ $command" "${transcripts[@]}" ||
    fail "example not run by any of $(basename -a "${transcripts[@]}" | tr '\n' ' '): $command"
done <<<"$commands"

if ((failures > 0)); then
  echo "$failures check(s) failed"
  exit 1
fi
echo "man page: renders cleanly, documents $(wc -l <<<"$table") options," \
  "$(wc -l <<<"$commands") examples run by the transcript"
