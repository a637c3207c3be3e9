#!/bin/sh
# commands_test.sh PROJECT BUILD: the "$ " lines in the ```console blocks of README.md print what stands below them, and
# end with status 0. They run one after the other in an empty folder that shows the samples, the docs and, as
# build/release, the build. An "export" counts for all lines behind it. Passed over is what installs or builds: ./dev, sudo,
# cmake.
set -eu
project=$1
build=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$scratch/steps" "$scratch/run/build"
for folder in samples docs; do ln -s "$project/$folder" "$scratch/run/$folder"; done
ln -s "$build" "$scratch/run/build/release"

# A file for each command, numbered in their order, and one for what it is to print.
awk -v steps="$scratch/steps" '
  /^```/ { inside = $0 == "```console"; next }
  !inside { next }
  continued { print >command; continued = /\\$/; next }
  /^\$ / {
    name = sprintf("%s/%03d", steps, ++count)
    command = name ".cmd"
    print substr($0, 3) >command
    printf "" >(name ".expected")
    continued = /\\$/
    next
  }
  count { print >(name ".expected") }
' "$project/README.md"

ran=0
failed=0
cd "$scratch/run"
: >"$scratch/exports"
for command in "$scratch"/steps/*.cmd; do
  text=$(cat "$command")
  case $text in ./dev* | sudo* | cmake*) continue ;; esac
  case $text in export*) cat "$command" >>"$scratch/exports" && continue ;; esac
  step=${command%.cmd}
  status=0
  cat "$scratch/exports" "$command" >"$step.script"
  sh "$step.script" >"$step.stdout" 2>"$step.stderr" || status=$?
  ran=$((ran + 1))
  if [ "$status" -ne 0 ] || ! cmp -s "$step.expected" "$step.stdout"; then
    printf '$ %s\nended with %s and printed:\n' "$text" "$status"
    cat "$step.stdout" "$step.stderr"
    printf 'The README says:\n'
    cat "$step.expected"
    failed=$((failed + 1))
  fi
done
[ "$failed" -eq 0 ] || exit 1
[ "$ran" -gt 5 ] || { echo 'README.md shows hardly any commands'; exit 1; }
echo "$ran commands print what the README says"
