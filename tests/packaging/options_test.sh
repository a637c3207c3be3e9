#!/bin/sh
# options_test.sh PROJECT PROGRAM...: every option of a program's --help has an entry in its man page and, but for "--", a
# place in its completion, and the page has entries for no others. (That the completion offers no others is seen where it
# runs.)
set -eu
project=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
faults=0
fault() { printf '%s\n' "$*" >&2; faults=$((faults + 1)); }

# Words that look like options, one a line.
words() { tr -cs 'A-Za-z0-9-' '\n' | grep -E '^--?[A-Za-z][A-Za-z-]*$|^--$' | sort -u; }
unformatted() { sed -e 's/\\-/-/g' -e 's/\\f[BIRP]//g' "$1"; }

for program in "$@"; do
  name=${program##*/}
  page=$project/man/$name.1.in
  completion=$project/completions/$name
  if [ "$name" = ei4convert ]; then
    # Its usage text leaves out most options and names two that are none; the source has them all.
    grep -oE 'is\("-[a-z]+"\)' "$project/src/driver/options.cpp" | tr -cd 'a-z\n-' | sed 's/^is//' | words >"$work/options"
    "$program" -help | words >"$work/help"
    printf '%s\n' -doAll -h >"$work/none"
  else
    "$program" --help | grep -v 'ei4convert -' | words >"$work/options"
    # The converter's options, which the text names on the way.
    grep -vxE -e '-geom|-blob' "$work/options" >"$work/options.own"
    mv "$work/options.own" "$work/options"
    : >"$work/help"
    : >"$work/none"
  fi
  [ "$(wc -l <"$work/options")" -ge 5 ] || fault "$name: its help names hardly an option"

  unformatted "$page" | words >"$work/page"
  # Up to the options' own heads: what else a page mentions may be another program's.
  unformatted "$page" | sed -n '/^\.SH OPTIONS/,/^\.SH /p' | grep -A 1 -E '^\.T[PQ]' | grep -E '^\.B' | words >"$work/heads"

  for option in $(cat "$work/options"); do
    grep -qxe "$option" "$work/heads" || fault "$name: $option has no entry under OPTIONS of the man page"
    [ "$option" = -- ] || grep -qwFe "$option" "$completion" || fault "$name: $option is not completed"
  done
  for option in $(cat "$work/heads"); do
    case $option in -h | --) continue ;; esac  # as everywhere; not each help finds them worth a word
    grep -qxe "$option" "$work/options" || fault "$name: the man page has $option, the help has not"
  done
  for option in $(cat "$work/help"); do
    grep -qxe "$option" "$work/page" || fault "$name: the man page is silent on $option"
  done
  for option in $(cat "$work/none"); do
    ! grep -qwFe " $option" "$completion" || fault "$name: $option is completed, and is no option"
  done
done
[ "$faults" -eq 0 ]
