#!/bin/sh
# special_code_test.sh NM OBJECT...: no function of these objects may stand in for one of another object. The linker
# keeps one copy of an inline function; a copy made for a special processor would then run on every processor.
set -eu
nm=$1
shift
[ $# -gt 0 ] || { echo 'no object to look at' >&2; exit 1; }
for object in "$@"; do
  shared=$("$nm" -C "$object" | grep -E ' [WVu] ' || true)
  if [ -n "$shared" ]; then
    printf '%s shares with other objects:\n%s\n' "$object" "$shared" >&2
    exit 1
  fi
done
