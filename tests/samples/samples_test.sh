#!/bin/sh
# samples_test.sh MAKE_SAMPLES FOLDER: makes the samples anew and compares them with the committed ones.
set -eu
made=$(mktemp -d)
trap 'rm -rf "$made"' EXIT
"$1" "$made"
cd "$2"
committed=$(find . -name '*.ei4' -o -name '*.erblb' | sort)
generated=$(cd "$made" && find . -type f | sort)
[ "$committed" = "$generated" ] || { printf 'committed:\n%s\nmade:\n%s\n' "$committed" "$generated"; exit 1; }
for file in $committed; do
  cmp "$file" "$made/$file"
done
