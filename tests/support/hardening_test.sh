#!/bin/sh
# hardening_test.sh READELF PROGRAM...: each of these programs was built with the protections that it should have.
set -eu
readelf=$1
shift
[ $# -gt 0 ] || { echo 'no program to look at' >&2; exit 1; }
faults=0
fault() { printf '%s: %s\n' "$program" "$*" >&2; faults=$((faults + 1)); }
all_symbols=''

for program in "$@"; do
  # Into variables: a reader that fails must end the test, and in a pipe it would not.
  header=$("$readelf" -hW "$program")
  segments=$("$readelf" -lW "$program")
  dynamic=$("$readelf" -dW "$program")
  symbols=$("$readelf" --dyn-syms -W "$program")
  has() { printf '%s\n' "$1" | grep -qE "$2"; }

  has "$header" '^ *Type: +DYN ' || fault 'stays at one address'
  has "$dynamic" '\(FLAGS_1\).* PIE' || fault 'does not move in memory (PIE)'
  has "$segments" '^ *GNU_RELRO ' || fault 'keeps its tables of addresses writable (RELRO)'
  has "$dynamic" '\(BIND_NOW\)|\(FLAGS\).*BIND_NOW' || fault 'resolves addresses late (BIND_NOW)'
  has "$segments" '^ *GNU_STACK .* RW +0x' || fault 'has an executable stack'
  ! has "$segments" '^ *LOAD .* R?WE' || fault 'has memory that can be written and run'
  has "$symbols" ' __stack_chk_fail(@|$)' || fault 'has no stack protector'
  # These are always replaced; others only where the compiler knows a size.
  ! has "$symbols" ' v?(f|d|s|sn)?printf(@|$)' || fault 'calls functions unchecked (_FORTIFY_SOURCE)'
  all_symbols="$all_symbols$symbols"
done
program='all together'
has "$all_symbols" ' __[a-z]+_chk(@|$)' || fault 'call no checked functions (_FORTIFY_SOURCE)'
[ "$faults" -eq 0 ]
