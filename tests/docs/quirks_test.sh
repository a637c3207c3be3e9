#!/bin/sh
# quirks_test.sh PROJECT: every "Quirk NAME" of the sources has a row in docs/quirks.md and every row its name in the
# sources, in each file that it gives, and a test that exists.
set -eu
cd "$1"
faults=0
fault() { printf '%s\n' "$*"; faults=$((faults + 1)); }

rows=$(sed -n 's/^| \([a-z0-9-]*\) | \(`[^|]*`\) | .* | `\([^`]*\)` |$/\1 \2 \3/p' docs/quirks.md | tr -d '`,')
[ -n "$rows" ] || { echo 'docs/quirks.md has no rows'; exit 1; }

named=$(grep -rhoE 'Quirk [a-z0-9]+(-[a-z0-9]+)+' src | sed 's/Quirk //' | sort -u)
for name in $named; do
  printf '%s\n' "$rows" | grep -q "^$name " || fault "$name: in the code, but not in docs/quirks.md"
done

while read -r name rest; do
  test_name=${rest##* }
  for file in ${rest% *}; do
    grep -q "Quirk $name" "src/$file" || fault "$name: not in src/$file"
  done
  suite=${test_name%%.*}
  case=${test_name#*.}
  if [ "$suite" = cli ]; then
    [ -d "tests/cli/$case" ] || fault "$name: no golden run $case"
  else
    [ "$case" = '*' ] && case=''
    grep -rqE "^TEST(_F|_P)?\($suite, $case" tests || fault "$name: no test $test_name"
  fi
done <<ROWS
$rows
ROWS
[ "$faults" -eq 0 ] || exit 1
echo "$(printf '%s\n' "$rows" | wc -l) oddities agree"
