#!/bin/sh
# The page of the gallery shows every kind, with the lines that its pictures are drawn from, and the view of the first
# picture, whose report is given: page_test.sh PROJECT REPORT
set -eu
page=$1/docs/gallery/README.md
kinds=$1/samples/gallery/kinds.txt
wrong=0
complain() { printf '%s\n' "$*"; wrong=1; }

shown=0
while IFS= read -r line; do
  case $line in
    '' | '#'* | 'picture '*) ;;
    'kind '*)
      kind=${line#kind }
      kind=${kind%% *}
      shown=$((shown + 1))
      [ -s "$1/docs/gallery/$kind.png" ] || complain "there is no sheet docs/gallery/$kind.png"
      grep -qF "($kind.png)" "$page" || complain "the page does not show $kind.png"
      ;;
    *) grep -qxF "    $line" "$page" || complain "the page lacks the line: $line" ;;
  esac
done <"$kinds"

while IFS= read -r line; do
  grep -qxF "    $line" "$page" || complain "the page lacks the line of the first report: $line"
done <"$2"

[ "$shown" -gt 0 ] || complain "no kinds were found in $kinds"
sheets=$(find "$1/docs/gallery" -name '*.png' | wc -l)
[ "$sheets" -eq "$shown" ] || complain "there are $sheets sheets in docs/gallery for $shown kinds"
exit $wrong
