#!/bin/sh
# quirks_test.sh PROJECT: every "Quirk NAME" of the sources has a row in docs/quirks.md and every row its name in the
# sources, in each file that it gives, and tests that exist.
set -eu
cd "$1"
faults=0
fault() { printf '%s\n' "$*"; faults=$((faults + 1)); }

# A row as: NAME FILE... -- TEST...
rows=$(sed -n 's/^| \([a-z0-9-]*\) | \(`[^|]*`\) | .* | \(`[^|]*`\) |$/\1 \2 -- \3/p' docs/quirks.md | tr -d '`,')
[ -n "$rows" ] || { echo 'docs/quirks.md has no rows'; exit 1; }
[ "$(grep -c '^| [a-z0-9-]* | `' docs/quirks.md)" -eq "$(printf '%s\n' "$rows" | wc -l)" ] ||
  fault 'docs/quirks.md has rows of another form'

named=$(grep -rhoE 'Quirk [a-z0-9]+(-[a-z0-9]+)+' src | sed 's/Quirk //' | sort -u)
for name in $named; do
  printf '%s\n' "$rows" | grep -q "^$name " || fault "$name: in the code, but not in docs/quirks.md"
done

while read -r name rest; do
  for file in ${rest% -- *}; do
    grep -q "Quirk $name" "src/$file" || fault "$name: not in src/$file"
  done
  for test_name in ${rest#* -- }; do
    suite=${test_name%%.*}
    case=${test_name#*.}
    case $suite in
      cli) [ -d "tests/cli/$case" ] || fault "$name: no golden run $case" ;;
      faults) grep -qw "$case" tests/faults/CMakeLists.txt || fault "$name: no scenario $case" ;;
      *) grep -rqE "^TEST(_F|_P)?\($suite, $case\)" tests || fault "$name: no test $test_name" ;;
    esac
  done
done <<ROWS
$rows
ROWS
[ "$faults" -eq 0 ] || exit 1
echo "$(printf '%s\n' "$rows" | wc -l) oddities agree"
