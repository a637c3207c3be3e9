#!/bin/sh
# run_example.sh BUILT EI4MAKE SAMPLES: both builds of the example (of build_example.sh) give back the pixels that were
# coded, and refuse what is no picture.
set -eu
[ $# -eq 3 ] || { echo 'usage: run_example.sh BUILT EI4MAKE SAMPLES' >&2; exit 2; }
built=$1
ei4make=$2
samples=$3
work=$built/run
mkdir -p "$work"
fail() { printf 'run_example: %s\n' "$*" >&2; exit 1; }

# Pictures of which every byte is known: 48 x 40 letters as grey values, 24 x 20 as colours, and 16 bits.
text() { awk -v count="$1" 'BEGIN { for (i = 0; i < count; ++i) printf "%c", 33 + (i * i + 7 * i) % 90 }'; }
{ printf 'P5\n48 40\n255\n' && text 1920; } >"$work/grey.pgm"
{ printf 'P6\n24 20\n255\n' && text 1440; } >"$work/colour.ppm"
{ printf 'P5\n32 30\n65535\n' && text 1920; } >"$work/deep.pgm"
for picture in grey.pgm colour.ppm deep.pgm; do "$ei4make" "$work/$picture" "$work/$picture.ei4"; done
head -c 60 "$work/grey.pgm.ei4" >"$work/cut.ei4"
head -c 30 "$work/grey.pgm.ei4" >"$work/short.ei4"
{ head -c 24 "$work/grey.pgm.ei4" && printf 'GW99' && tail -c +29 "$work/grey.pgm.ei4"; } >"$work/foreign.ei4"
{ head -c 30 "$work/grey.pgm.ei4" && printf '\377\377\377\377' && tail -c +35 "$work/grey.pgm.ei4"; } >"$work/huge.ei4"

for program in "$built/cmake/ei4_to_pnm" "$built/pkg-config/ei4_to_pnm"; do
  for picture in grey.pgm colour.ppm deep.pgm; do
    "$program" "$work/$picture.ei4" "$work/decoded"
    cmp "$work/$picture" "$work/decoded" || fail "$picture came back changed"
  done
  "$program" "$samples/mr.ei4" "$work/decoded"
  [ "$(head -n 3 "$work/decoded" | tr '\n' ' ')" = 'P5 384 384 1023 ' ] || fail 'the sample has another size'

  "$program" "$work/cut.ei4" "$work/decoded" 2>"$work/messages" || fail 'a cut stream gave no picture'
  grep -q 'detail is missing' "$work/messages" || fail 'a cut stream was not noted'
  for bad in short foreign huge missing; do
    status=0
    "$program" "$work/$bad.ei4" "$work/nothing" 2>/dev/null || status=$?
    [ "$status" -eq 1 ] && [ ! -e "$work/nothing" ] || fail "$bad.ei4 ended with $status"
  done
  status=0
  "$program" "$work" "$work/nothing" 2>/dev/null || status=$?
  [ "$status" -eq 1 ] || fail "a folder ended with $status"
done
