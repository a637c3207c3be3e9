#!/bin/sh
# memcheck.sh PROGRAM [ARGUMENTS]: runs it under valgrind. A read of what nobody wrote, an access outside a block or a
# block that nobody owns any more ends with status 99. Memory that is still in reach at the end is no fault. Nothing for
# runs with gigabytes of memory: valgrind keeps as much again.
set -eu
here=$(CDPATH='' cd -- "$(dirname -- "$0")" && pwd)
exec valgrind --quiet --error-exitcode=99 --track-origins=yes --leak-check=full --show-leak-kinds=definite \
  --errors-for-leak-kinds=definite --suppressions="$here/memcheck.supp" "$@"
