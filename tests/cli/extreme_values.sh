#!/bin/sh
# Numbers at and beyond the limits of every option: each run ends as a conversion or as a refusal, and a conversion's
# output has the size that it prints.
# Usage: extreme_values.sh PROGRAM INPUTS
set -u
program=$1
inputs=$2
work=$(mktemp -d) || exit 2
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 2
runs=0
faults=0

fault() {
  faults=$((faults + 1))
  printf 'fault: %s: %s\n' "$1" "$2" >&2
}

# check BYTES_PER_PIXEL WORD...: a conversion to out.raw.
check() {
  bytes=$1
  shift
  rm -f out.raw
  runs=$((runs + 1))
  timeout 60 "$program" "$@" -out out.raw >result 2>error
  status=$?
  printed=$(cat result)
  [ ! -s error ] || fault "$*" "wrote on standard error: $(head -c 200 error)"
  case $status in
    0)
      wanted=$(printf '%s\n' "$printed" | awk -v b="$bytes" '{ printf "%d", $1 * $2 * b }')
      [ "$(wc -c <out.raw)" -eq "$wanted" ] || fault "$*" "printed \"$printed\", wrote $(wc -c <out.raw) bytes"
      ;;
    1)
      [ -z "$printed" ] || fault "$*" "failed, but printed \"$printed\""
      [ ! -e out.raw ] || fault "$*" "failed, but left an output"
      ;;
    *) fault "$*" "ended with status $status" ;;
  esac
}

numbers='0 1 -1 31 32767 65536 2147483647 2147483648 -2147483648 -2147483649 4294967295 4294967296 4294967297
  9223372036854775807 9223372036854775808 -9223372036854775808 99999999999999999999999999 nan 0x7f'
reals='0 -0 nan -nan inf -inf 1e-45 -1e-45 3.5e38 1e999 -1e999 1e-999 2147483648 -2147483649 0x1p-149'

for n in $numbers; do
  for m in 1 48 "$n"; do
    check 1 -in "$inputs/grey.raw" -incolor M08 -size "${n}x$m"
    check 1 -in "$inputs/grey.raw" -incolor M08 -size "${m}x$n"
  done
  for box in "${n}x64" "64x$n" "${n}x$n"; do
    # Sides that would give a picture of many gigabytes are left out: it is what the command line asks for.
    case $box in 65536x65536 | 2147483647x2147483647) continue ;; esac
    check 1 -in "$inputs/grey.ei4" -geom "$box"
    check 1 -in "$inputs/grey.raw" -incolor M08 -size 64x48 -geom "$box"
  done
  for word in -window -level; do
    check 2 -in "$inputs/ct.raw" -incolor M16 -size 512x512 -window 400 -level 40 -slope 1 -intercept 0 "$word" "$n"
  done
done
for r in $reals; do
  for word in -slope -intercept; do
    check 2 -in "$inputs/ct.raw" -incolor M16 -size 512x512 -window 400 -level 40 -slope 1 -intercept 0 "$word" "$r"
  done
  check 2 -in "$inputs/ct.raw" -incolor M16 -size 512x512 -window 2147483647 -level -2147483648 -slope "$r" -intercept "$r"
done

printf '%s runs, %s faults\n' "$runs" "$faults"
[ "$runs" -gt 200 ] && [ "$faults" -eq 0 ]
