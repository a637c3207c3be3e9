#!/bin/sh
# man_pages_test.sh FOLDER: the pages there render without a warning, and have what each page is to have.
set -eu
cd "$1"
command -v groff >/dev/null || { echo 'there is no groff'; exit 77; }
faults=0
fault() { printf '%s\n' "$*" >&2; faults=$((faults + 1)); }

for page in ei4convert.1 ei4info.1 ei4make.1 erblb.1; do
  warnings=$(groff -man -ww -rLL=80n -Tutf8 "$page" 2>&1 >"$page.txt") || fault "$page: groff cannot render it"
  [ -z "$warnings" ] || fault "$page: $warnings"
  ! grep -n '@[A-Za-z_]*@' "$page" || fault "$page: holds what was not filled in"
  for section in NAME SYNOPSIS DESCRIPTION OPTIONS 'EXIT STATUS' EXAMPLES 'SEE ALSO'; do
    grep -qE "^\.SH \"?$section\"?\$" "$page" || fault "$page: has no section $section"
  done
  sed -n '/^\.SH NAME/{n;p}' "$page" | grep -q "^${page%.1} \\\\- [a-z]" || fault "$page: its name line is none"
  rm -f "$page.txt"
done

if command -v man >/dev/null; then
  for page in *.1; do
    warnings=$(MANWIDTH=80 LC_ALL=C.UTF-8 man --warnings -l "$page" 2>&1 >/dev/null) || fault "$page: man cannot show it"
    [ -z "$warnings" ] || fault "$page: $warnings"
  done
fi
[ "$faults" -eq 0 ]
