#!/bin/sh
# version_test.sh PROJECT BUILD VERSION PROGRAM...: the changelog's top entry, the man pages and the tools' --version
# state the project's version.
set -eu
project=$1
build=$2
version=$3
shift 3
fail() { printf '%s\n' "$*" >&2; exit 1; }

top=$(grep -m 1 '^## ' "$project/CHANGELOG.md")
printf '%s\n' "$top" | grep -qE "^## $version - [0-9]{4}-[0-9]{2}-[0-9]{2}\$" ||
  fail "the changelog's top entry is \"$top\", not \"## $version - a date\""
date=${top##* - }

for program in "$@"; do
  name=${program##*/}
  head -n 1 "$build/man/$name.1" | grep -qF "\"$date\" \"ei4convert $version\"" ||
    fail "the page of $name does not state $version and $date"
  [ "$name" != ei4convert ] || continue  # it has no option for it
  said=$("$program" --version)
  [ "$said" = "$name $version" ] || fail "$name says \"$said\""
done
